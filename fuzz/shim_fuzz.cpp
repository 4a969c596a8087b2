// Any bytes as a shim cache: recognised, walked and written in every form. Whatever they hold, no
// control character but TABs and the ends of rows comes out.

#include <ostream>
#include <streambuf>

#include "shim/shim_detect.h"
#include "shim/shim_parse.h"
#include "shim/shim_rows.h"

namespace {

/// Takes everything, looks at it and keeps nothing.
class checking_buffer : public std::streambuf {
 protected:
  int_type overflow(int_type ch) override {
    const char c = traits_type::to_char_type(ch);
    if (!traits_type::eq_int_type(ch, traits_type::eof())) xsputn(&c, 1);
    return traits_type::not_eof(ch);
  }

  std::streamsize xsputn(const char* bytes, std::streamsize length) override {
    for (const char c : std::string_view(bytes, static_cast<size_t>(length))) {
      const bool control = (c >= 0 && c < 0x20) || c == 0x7F;
      if (control && c != '\t' && c != '\n') __builtin_trap();
    }
    return length;
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace ovrik;
  const byte_view cache(data, size);
  detected_shim found;
  const bool detected = detect_shim_layout(cache, found);
  checking_buffer buffer;
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
