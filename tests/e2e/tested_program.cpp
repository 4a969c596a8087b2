#include "e2e/tested_program.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>

namespace test_support {

namespace {

run_result run_on_host(const std::vector<std::string>& command, const run_options& options) {
  const std::vector<std::string> arguments(command.begin() + 1, command.end());
  run_result result = run_program(command.front(), arguments, options);
  // Now and then Wine trips over its own end, behind that of the program, whose exit value is lost.
  constexpr const char* trip = "Inconsistency detected by ld.so";
  for (int left = 3; left > 0 && result.err.find(trip) != std::string::npos; --left) {
    result = run_program(command.front(), arguments, options);
  }
  return result;
}

}  // namespace

std::vector<std::string> ovrik_command() {
  const char* wine = std::getenv("OVRIK_WINE");
  const char* program = std::getenv("OVRIK_PROGRAM");
  std::vector<std::string> command;
  if (wine != nullptr) command.emplace_back(wine);
  command.emplace_back(program != nullptr ? program : OVRIK_PROGRAM);
  return command;
}

bool is_windows_program() { return std::getenv("OVRIK_WINE") != nullptr; }

std::string host_path(std::string path) {
  if (is_windows_program()) std::replace(path.begin(), path.end(), '/', '\\');
  return path;
}

bool ended_abnormally(const run_result& result) {
  constexpr int abort_status = 3;  // of a program for Windows
  return is_windows_program() ? result.exit_status == abort_status : result.signal == SIGABRT;
}

run_result run_ovrik(const std::vector<std::string>& arguments, const run_options& options) {
  std::vector<std::string> command = ovrik_command();
  command.insert(command.end(), arguments.begin(), arguments.end());
  return run_on_host(command, options);
}

run_result run_beside_ovrik(const std::string& name, const std::vector<std::string>& arguments,
                            const run_options& options) {
  std::vector<std::string> command = ovrik_command();
  command.back() = std::filesystem::path(command.back()).replace_filename(name).string();
  command.insert(command.end(), arguments.begin(), arguments.end());
  return run_on_host(command, options);
}

}  // namespace test_support
