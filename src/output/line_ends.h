// Line ends inside a cell.
#pragma once

#include <string>

namespace ovrik {

/// Rewrites the line ends of `text` as "[CRLF]", "[LFCR]", "[LF]", or "[CR]" if it has no LF at
/// all; a CR that touches no LF stays in a text with an LF.
void escape_line_ends(std::string& text);

}  // namespace ovrik
