#include "e2e/tested_program.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iterator>

namespace test_support {

namespace {

/// What Wine says now and then of itself: that it finds the place taken which each process needs at
/// 7FFE0000, before the program starts; or that it trips over its own end, behind that of the
/// program, whose exit value is lost.
constexpr const char* wine_trips[] = {"failed to map the shared user data",
                                      "Inconsistency detected by ld.so"};

bool wine_tripped(const run_result& result) {
  return std::any_of(std::begin(wine_trips), std::end(wine_trips),
                     [&](const char* trip) { return result.err.find(trip) != std::string::npos; });
}

}  // namespace

bool is_windows_program() { return std::getenv("OVRIK_WINE") != nullptr; }

std::string program_path(const std::string& beside) {
  const char* named = std::getenv("OVRIK_PROGRAM");
  const std::filesystem::path path = named != nullptr ? named : OVRIK_PROGRAM;
  return beside.empty() ? path : path.parent_path() / beside;
}

std::string start_of_program(const std::string& beside) {
  const char* wine = std::getenv("OVRIK_WINE");
  return (wine != nullptr ? wine : "") + shell_words{program_path(beside)}.line;
}

std::string host_path(std::string path) {
  if (is_windows_program()) std::replace(path.begin(), path.end(), '/', '\\');
  return path;
}

int abnormal_end() { return is_windows_program() ? 3 : 128 + SIGABRT; }

run_result run_ovrik(const shell_words& arguments, const run_options& options,
                     const std::string& beside) {
  const std::string line = start_of_program(beside) + " " + arguments.line;
  run_result result = run_program("env", line, options);
  for (int left = 3; left > 0 && wine_tripped(result); --left) {
    result = run_program("env", line, options);
  }
  return result;
}

}  // namespace test_support
