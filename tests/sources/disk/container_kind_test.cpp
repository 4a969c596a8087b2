// Containers are told by their first bytes.
#include "sources/disk/container_kind.h"

#include <gtest/gtest.h>

#include "support/bytes.h"
#include "support/vmdk_builder.h"

namespace test_support {
namespace {

using ovrik::container_kind;

container_kind kind_of(const bytes& start) { return kind_of_container(ovrik::byte_view(start)); }

bytes marked(size_t at, const std::string& mark) {
  bytes start(512);
  put(start, at, as_bytes(mark));
  return start;
}

TEST(container_kind, files_and_volumes_are_told_by_their_signatures) {
  bytes sparse = vmdk_builder{.descriptor = "CID=1"}.file();
  EXPECT_EQ(kind_of(sparse), container_kind::vmdk);
  put_u64(sparse, 36, 0);
  EXPECT_EQ(kind_of(sparse), container_kind::vmdk_extent);
  EXPECT_EQ(kind_of(vmdk_builder{.descriptor = ""}.file()), container_kind::vmdk_extent);
  put_u32(sparse, 8, 0x30001);
  EXPECT_EQ(kind_of(sparse), container_kind::vmdk_compressed);
  EXPECT_EQ(kind_of(as_bytes("# Disk DescriptorFile\n")), container_kind::vmdk_descriptor);
  EXPECT_EQ(kind_of(as_bytes("# Disk Descriptor")), container_kind::none);
  EXPECT_EQ(kind_of(marked(64, "\x7F\x10\xDA\xBE")), container_kind::vdi);
  EXPECT_EQ(kind_of(marked(0, "vhdxfile")), container_kind::vhdx);
  EXPECT_EQ(kind_of(marked(3, "-FVE-FS-")), container_kind::bitlocker);
  EXPECT_EQ(kind_of(marked(3, "NTFS    ")), container_kind::none);
  EXPECT_EQ(kind_of({}), container_kind::none);
}

}  // namespace
}  // namespace test_support
