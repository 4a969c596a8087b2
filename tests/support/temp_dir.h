// A folder of a test's own that goes away with the object.

#pragma once

#include <string>
#include <string_view>

namespace test_support {

class temp_dir {
 public:
  temp_dir();  ///< std::runtime_error if no folder can be made
  ~temp_dir();
  temp_dir(const temp_dir&) = delete;
  temp_dir& operator=(const temp_dir&) = delete;

  const std::string& path() const { return m_path; }
  std::string path(std::string_view name) const;

 private:
  std::string m_path;
};

}  // namespace test_support
