#include "output/utf8_locale_win32.h"

#include "base/windows_api_win32.h"

namespace uni {

utf8_locale::utf8_locale()
    : m_output_code_page(GetConsoleOutputCP()), m_input_code_page(GetConsoleCP()) {
  if (m_output_code_page != 0) SetConsoleOutputCP(CP_UTF8);
}

utf8_locale::~utf8_locale() {
  if (m_output_code_page != 0) SetConsoleOutputCP(m_output_code_page);
  if (m_input_code_page != 0) SetConsoleCP(m_input_code_page);
}

}  // namespace uni
