#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <iterator>

#include "output/unbroken.h"

namespace uni {

namespace {

constexpr int ending_signals[] = {SIGINT, SIGTERM, SIGHUP};
constexpr unsigned longest_wait = 2;  // seconds, for a reader that takes nothing

ending_stream* watched[8] = {};
volatile std::sig_atomic_t changing = 0;
volatile std::sig_atomic_t waiting_signal = 0;

/// Ends the process as the signal does where nobody handles it.
void die_of(int signal) {
  std::signal(signal, SIG_DFL);
  sigset_t only{};
  sigemptyset(&only);
  sigaddset(&only, signal);
  std::raise(signal);
  sigprocmask(SIG_UNBLOCK, &only, nullptr);
}

void on_wait_over(int /*signal*/) { die_of(waiting_signal); }

/// The first signal lets a write that has begun come to its end, for a while; the next one does
/// not.
void on_signal(int signal) {
  const bool again = waiting_signal != 0;
  waiting_signal = signal;
  if (again) die_of(signal);
  alarm(longest_wait);
  if (changing != 0) return;
  end_rows();
  die_of(signal);
}

void handle(int signal, void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART | SA_NODEFER;
  sigemptyset(&action.sa_mask);
  sigaction(signal, &action, nullptr);
}

void replace_watched(ending_stream* from, ending_stream* to) {
  ending_stream** place = std::find(std::begin(watched), std::end(watched), from);
  if (place != std::end(watched)) *place = to;
  std::atomic_signal_fence(std::memory_order_seq_cst);
}

}  // namespace

void watch_for_end(ending_stream* stream) { replace_watched(nullptr, stream); }
void forget_at_end(ending_stream* stream) { replace_watched(stream, nullptr); }

unbroken::unbroken() {
  changing = 1;
  std::atomic_signal_fence(std::memory_order_seq_cst);
}

unbroken::~unbroken() {
  std::atomic_signal_fence(std::memory_order_seq_cst);
  changing = 0;
  if (waiting_signal == 0) return;
  end_rows();
  die_of(waiting_signal);
}

void end_with_whole_rows() {
  for (const int signal : ending_signals) {
    struct sigaction before {};
    const bool known = sigaction(signal, nullptr, &before) == 0;
    if (known && before.sa_handler != SIG_IGN) handle(signal, on_signal);
  }
  handle(SIGALRM, on_wait_over);
}

void end_rows() {
  changing = 1;  // another signal does not write the same rows again
  for (ending_stream* stream : watched) {
    if (stream != nullptr) stream->write_last_rows();
  }
}

}  // namespace uni
