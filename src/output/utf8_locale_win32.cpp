#include "base/windows_api_win32.h"
#include "output/utf8_locale.h"

namespace uni {

utf8_locale::utf8_locale()
    : m_output_code_page(GetConsoleOutputCP()), m_input_code_page(GetConsoleCP()) {
  SetConsoleOutputCP(CP_UTF8);
}

utf8_locale::~utf8_locale() {
  SetConsoleOutputCP(m_output_code_page);
  SetConsoleCP(m_input_code_page);
}

}  // namespace uni
