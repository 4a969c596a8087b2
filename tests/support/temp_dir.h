// A folder of a test's own that goes away with the object.

#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace test_support {

class temp_dir {
 public:
  temp_dir() {
    if (mkdtemp(m_path.data()) == nullptr) throw std::runtime_error("cannot make " + m_path);
  }
  ~temp_dir() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  temp_dir(const temp_dir&) = delete;
  temp_dir& operator=(const temp_dir&) = delete;

  const std::string& path() const { return m_path; }
  std::string path(const std::string& name) const { return m_path + "/" + name; }

 private:
  std::string m_path = std::filesystem::temp_directory_path() / "ovrik-test-XXXXXX";
};

}  // namespace test_support
