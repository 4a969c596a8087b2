// Small operations on UTF-8 text. Lower-casing touches A to Z only, so that no output depends on
// the locale.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ovrik {

std::string lower_ascii(std::string_view text);

/// True if the two texts are equal when A to Z are taken as a to z.
bool equal_ignoring_case(std::string_view left, std::string_view right);

/// `text` without the blanks, TABs and line ends at its two ends.
std::string trim(std::string_view text);

/// The pieces of `text` between the `separator`s, empty pieces included; never an empty list.
std::vector<std::string> split(std::string_view text, char separator);

/// The parts of a list that `|`, `,` and `;` separate, without quotes and without the blanks around
/// them; empty ones are left out.
std::vector<std::string> list_parts(std::string list);

/// Every `from` in `text` becomes `to`.
void replace_all(std::string& text, char from, char to);

/// Takes every `unwanted` out of `text`.
void remove_all(std::string& text, char unwanted);

/// Appends `text` and then as many blanks as it lacks for `width` bytes.
void append_padded_right(std::string& line, std::string_view text, size_t width);

/// Appends as many `fill` characters as `text` lacks for `width` bytes, and then `text`.
void append_padded_left(std::string& line, std::string_view text, size_t width, char fill);

}  // namespace ovrik
