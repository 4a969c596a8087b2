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
    for (const row_form form : {row_form::padded, row_form::multiline, row_form::csv, row_form::l2t,
                                row_form::bodyfile}) {
      row_settings rows;
      rows.form = form;
      row_writer writer(out, rows);
      output_shim_cache(writer, {}, results, {.raw_mode = raw, .inc_slack = true}, cache);
    }
  }
  return 0;
}
