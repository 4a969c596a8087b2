#include <algorithm>
#include <iterator>

#include "base/windows_api_win32.h"
#include "output/unbroken.h"

namespace uni {

namespace {

ending_stream* watched[8] = {};
SRWLOCK changing = SRWLOCK_INIT;  // the handler of the console runs in a thread of its own

void replace_watched(ending_stream* from, ending_stream* to) {
  const unbroken held;
  ending_stream** place = std::find(std::begin(watched), std::end(watched), from);
  if (place != std::end(watched)) *place = to;
}

}  // namespace

void watch_for_end(ending_stream* stream) { replace_watched(nullptr, stream); }
void forget_at_end(ending_stream* stream) { replace_watched(stream, nullptr); }

unbroken::unbroken() { AcquireSRWLockExclusive(&changing); }
unbroken::~unbroken() { ReleaseSRWLockExclusive(&changing); }

void end_with_whole_rows() {}

void end_rows() {
  AcquireSRWLockExclusive(&changing);  // and never given back: the process ends
  for (ending_stream* stream : watched) {
    if (stream != nullptr) stream->write_last_rows();
  }
}

}  // namespace uni
