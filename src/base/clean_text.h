// Text that comes from evidence, made safe to be shown: in results, headings, messages, progress.
#pragma once

#include <string>
#include <string_view>

namespace ovrik {

/// `text` without any character that a terminal obeys or that ends a line:
/// - U+0000 to U+001F but the TAB become their control pictures, U+2400 to U+241F (ESC is U+241B,
///   LF is U+240A), and U+007F becomes U+2421;
/// - C1 characters (U+0080 to U+009F), line and paragraph separators (U+2028, U+2029), what embeds,
///   overrides or isolates a direction of writing (U+202A to U+202E, U+2066 to U+2069), halves of
///   surrogate pairs and bytes that are no UTF-8 become U+FFFD.
/// The TAB stays: identities of packaged programs have it. So do the marks U+200E, U+200F and
/// U+061C: they do not turn letters round, and real names have them.
std::string clean_text(std::string_view text);

/// `clean_text` for several lines of the program's own, whose line feeds stay.
std::string clean_lines(std::string_view text);

/// The first characters of UTF-8 `text`, as many as fit whole into `most_bytes`.
std::string_view first_characters(std::string_view text, size_t most_bytes);

/// The last characters of UTF-8 `text`, as many as fit whole into `most_bytes`.
std::string_view last_characters(std::string_view text, size_t most_bytes);

}  // namespace ovrik
