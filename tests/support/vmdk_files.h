// A folder of composed VMDK files for tests that open them.

#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>

#include "support/temp_dir.h"
#include "support/vmdk_builder.h"

namespace test_support {

class vmdk_files : public testing::Test {
 protected:
  std::string put_file(const std::string& name, const bytes& content) const {
    write_file(folder.path(name), content);
    return folder.path(name);
  }
  std::string put_disk(const std::string& name, const std::string& descriptor,
                       std::map<uint64_t, bytes> data = {}) const {
    return put_file(name, vmdk_builder{.descriptor = descriptor, .data = std::move(data)}.file());
  }

  const temp_dir folder;
  const std::string base_text = vmdk_descriptor_text("00000001", "ffffffff");
  const std::string child_text = vmdk_descriptor_text("00000002", "00000001", "base.vmdk");
};

}  // namespace test_support
