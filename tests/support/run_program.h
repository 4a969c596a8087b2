// Runs a program as a user does, without a shell, and keeps what it said.

#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace test_support {

struct run_options {
  std::optional<std::string> input = {};                ///< through a pipe; else an empty input
  std::string folder = {};                              ///< to run in; else the caller's
  std::map<std::string, std::string> environment = {};  ///< added to the caller's
  std::string out_path = {};  ///< standard output goes to this file, and `out` stays empty
  std::chrono::milliseconds timeout = std::chrono::seconds(60);
};

struct run_result {
  int exit_status = -1;  ///< -1 if a signal ended the program, 127 if it could not be started
  int signal = 0;
  bool timed_out = false;  ///< the program was killed, with all that it had started
  std::string out;
  std::string err;
};

/// Runs `program` (looked up as a path, not in PATH unless it has no slash) to its end.
/// std::runtime_error if no process or pipe can be made.
run_result run_program(const std::string& program, const std::vector<std::string>& arguments,
                       const run_options& options = {});

}  // namespace test_support
