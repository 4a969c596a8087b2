// Any bytes as a shim cache: recognised, walked and written in every form.

#include <ostream>
#include <streambuf>

#include "shim/shim_detect.h"
#include "shim/shim_parse.h"
#include "shim/shim_rows.h"

namespace {

/// Takes everything and keeps nothing.
class null_buffer : public std::streambuf {
 protected:
  int_type overflow(int_type ch) override { return traits_type::not_eof(ch); }
  std::streamsize xsputn(const char*, std::streamsize length) override { return length; }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace ovrik;
  const byte_view cache(data, size);
  detected_shim found;
  const bool detected = detect_shim_layout(cache, found);
  null_buffer buffer;
  std::ostream out(&buffer);
  for (const bool raw : {false, true}) {
    shim_cache_results results;
    const bool parsed = parse_shim_cache(results, cache, static_cast<uint32_t>(size / 2), raw);
    if (parsed && !detected) __builtin_trap();
    for (bool row_settings::*const form : {&row_settings::form_multiline, &row_settings::form_csv,
                                           &row_settings::form_l2t, &row_settings::form_bodyfile}) {
      shim_settings settings;
      settings.*form = true;
      settings.raw_mode = raw;
      settings.inc_slack = true;
      output_shim_cache(out, results, settings, cache);
    }
  }
  return 0;
}
