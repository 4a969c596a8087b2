#include "support/run_program.h"

#include <sys/wait.h>

#include <cstdlib>

#include "support/bytes.h"
#include "support/temp_dir.h"

namespace test_support {

shell_words::shell_words(const words& list) {
  for (std::string word : list) {
    for (size_t at = 0; (at = word.find('\'', at)) != std::string::npos; at += 4) {
      word.replace(at, 1, "'\\''");
    }
    line += " '" + word + "'";
  }
}

run_result run_program(const std::string& program, const shell_words& arguments,
                       const run_options& options) {
  const temp_dir files;
  const std::string out = options.out_path.empty() ? files.path("out") : options.out_path;
  write_file(files.path("in"), options.input);
  const shell_words folder = {options.folder}, started = {program};
  const std::string line = "cd" + folder.line + " && cat " + files.path("in") + " | >" + out +
                           " 2>" + files.path("err") + " env " + options.environment +
                           " timeout -s KILL 60" + started.line + " " + arguments.line;
  const int status = std::system(line.c_str());
  const std::string said = options.out_path.empty() ? as_text(read_file(out)) : "";
  return {WEXITSTATUS(status), said, as_text(read_file(files.path("err")))};
}

}  // namespace test_support
