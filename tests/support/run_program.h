// Runs a program as a user does and keeps what it said.

#pragma once

#include <string>
#include <vector>

namespace test_support {

using words = std::vector<std::string>;

/// What follows a program's name: words, each taken as it is, or a line that the shell takes apart.
struct shell_words {
  shell_words(const char* text) : line(text) {}
  shell_words(std::string text) : line(std::move(text)) {}
  shell_words(std::initializer_list<std::string> list) : shell_words(words(list)) {}
  shell_words(const words& list);
  std::string line;
};

struct run_options {
  std::string input = {};        ///< through a pipe
  std::string folder = ".";      ///< to run in
  std::string environment = {};  ///< "NAME=VALUE" for the shell, added to the caller's
  std::string out_path = {};     ///< standard output goes to this file, and `out` stays empty
};

struct run_result {
  int exit_status;  ///< as the shell tells it: 127 if there is no program, 128 + a signal
  std::string out;
  std::string err;
};

/// Runs `program`, to be found as the shell finds it, to its end, which comes after 60 seconds.
run_result run_program(const std::string& program, const shell_words& arguments,
                       const run_options& options = {});

}  // namespace test_support
