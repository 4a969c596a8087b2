#include "support/temp_dir.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace test_support {

temp_dir::temp_dir()
    : m_path((std::filesystem::temp_directory_path() / "ovrik-test-XXXXXX").string()) {
  if (mkdtemp(m_path.data()) == nullptr) throw std::runtime_error("cannot make " + m_path);
}

temp_dir::~temp_dir() {
  std::error_code ignored;
  std::filesystem::remove_all(m_path, ignored);
}

std::string temp_dir::path(std::string_view name) const { return m_path + "/" + std::string(name); }

}  // namespace test_support
