// What makes a console show the UTF-8 text of the results.
#pragma once

#include <cstdint>

namespace uni {

/// Sets the console's output to UTF-8 for as long as it lives and puts back what it found. Does
/// nothing without a console.
class utf8_locale {
 public:
  utf8_locale();
  virtual ~utf8_locale();
  utf8_locale(const utf8_locale&) = delete;
  utf8_locale& operator=(const utf8_locale&) = delete;

 private:
  // What was found; 0 without a console.
  uint32_t m_output_code_page = 0;
  uint32_t m_input_code_page = 0;
};

}  // namespace uni
