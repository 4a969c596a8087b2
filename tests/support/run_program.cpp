#include "support/run_program.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <stdexcept>
#include <string_view>

namespace test_support {
namespace {

using clock = std::chrono::steady_clock;

/// A file descriptor that closes itself.
class descriptor {
 public:
  descriptor() = default;
  explicit descriptor(int number) : m_number(number) {}
  ~descriptor() { close(); }
  descriptor(const descriptor&) = delete;
  descriptor& operator=(const descriptor&) = delete;
  int number() const { return m_number; }
  bool is_open() const { return m_number >= 0; }
  void open(int number) {
    close();
    m_number = number;
  }
  void close() {
    if (is_open()) ::close(m_number);
    m_number = -1;
  }

 private:
  int m_number = -1;
};

struct pipe_ends {
  descriptor read;
  descriptor write;
  pipe_ends() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("cannot make a pipe");
    read.open(ends[0]);
    write.open(ends[1]);
  }
};

/// Writing to a program that reads no more must be an error here, not a signal.
class ignored_pipe_signal {
 public:
  ignored_pipe_signal() : m_before(std::signal(SIGPIPE, SIG_IGN)) {}
  ~ignored_pipe_signal() { std::signal(SIGPIPE, m_before); }
  ignored_pipe_signal(const ignored_pipe_signal&) = delete;
  ignored_pipe_signal& operator=(const ignored_pipe_signal&) = delete;

 private:
  void (*m_before)(int);
};

std::vector<std::string> joined_environment(const std::map<std::string, std::string>& added) {
  std::vector<std::string> all;
  for (char** at = environ; *at != nullptr; ++at) {
    const std::string_view text = *at;
    if (!added.contains(std::string(text.substr(0, text.find('='))))) all.emplace_back(text);
  }
  for (const auto& [name, value] : added) all.push_back(name + "=" + value);
  return all;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
  std::vector<char*> found;
  for (std::string& text : texts) found.push_back(text.data());
  found.push_back(nullptr);
  return found;
}

void read_some(descriptor& from, std::string& to) {
  std::array<char, 65536> block;
  const ssize_t count = read(from.number(), block.data(), block.size());
  if (count > 0) {
    to.append(block.data(), static_cast<size_t>(count));
  } else if (count == 0 || errno != EINTR) {
    from.close();
  }
}

void write_some(descriptor& to, std::string_view& left) {
  const ssize_t count = write(to.number(), left.data(), left.size());
  if (count > 0) left.remove_prefix(static_cast<size_t>(count));
  if (left.empty() || (count < 0 && errno != EINTR && errno != EAGAIN)) to.close();
}

}  // namespace

run_result run_program(const std::string& program, const std::vector<std::string>& arguments,
                       const run_options& options) {
  std::vector<std::string> words = {program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<std::string> environment = joined_environment(options.environment);
  const std::vector<char*> word_list = pointers(words);
  const std::vector<char*> environment_list = pointers(environment);

  const ignored_pipe_signal guard;
  pipe_ends in, out, err;
  const descriptor nothing(open("/dev/null", O_RDONLY | O_CLOEXEC));
  descriptor out_file;
  if (!options.out_path.empty()) {
    out_file.open(open(options.out_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644));
    if (!out_file.is_open()) throw std::runtime_error("cannot write " + options.out_path);
  }

  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("cannot start a process");
  if (child == 0) {
    setpgid(0, 0);
    std::signal(SIGPIPE, SIG_DFL);
    dup2(options.input ? in.read.number() : nothing.number(), STDIN_FILENO);
    dup2(out_file.is_open() ? out_file.number() : out.write.number(), STDOUT_FILENO);
    dup2(err.write.number(), STDERR_FILENO);
    if (options.folder.empty() || chdir(options.folder.c_str()) == 0) {
      execvpe(program.c_str(), word_list.data(), environment_list.data());
    }
    _exit(127);
  }
  setpgid(child, child);
  in.read.close();
  out.write.close();
  err.write.close();

  run_result result;
  std::string_view input_left;
  if (options.input) input_left = *options.input;
  if (input_left.empty()) in.write.close();
  if (in.write.is_open()) fcntl(in.write.number(), F_SETFL, O_NONBLOCK);
  const clock::time_point deadline = clock::now() + options.timeout;
  while (out.read.is_open() || err.read.is_open()) {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - clock::now()).count();
    pollfd waits[] = {{out.read.number(), POLLIN, 0},
                      {err.read.number(), POLLIN, 0},
                      {in.write.number(), POLLOUT, 0}};
    const int ready = left > 0 ? poll(waits, 3, static_cast<int>(left)) : 0;
    if (ready == 0) {
      result.timed_out = true;
      kill(-child, SIGKILL);
      break;
    }
    if (ready < 0) continue;  // a signal came
    if (waits[0].revents != 0) read_some(out.read, result.out);
    if (waits[1].revents != 0) read_some(err.read, result.err);
    if (waits[2].revents != 0) write_some(in.write, input_left);
  }

  in.write.close();
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  if (WIFEXITED(status)) result.exit_status = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) result.signal = WTERMSIG(status);
  return result;
}

}  // namespace test_support
