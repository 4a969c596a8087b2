// Units of NTFS compression, byte by byte.
#include "sources/ntfs/lznt1.h"

#include <gtest/gtest.h>

#include "support/bytes.h"

namespace test_support {
namespace {

TEST(lznt1, chunks_of_all_kinds_give_their_bytes) {
  // "abc" and a copy of 4098 bytes from three back, of which the chunk has room for 4093.
  const bytes packed = {0x05, 0xB0, 0x08, 'a', 'b', 'c', 0xFF, 0x2F};
  bytes plain(4096), stored(4096);
  for (size_t i = 0; i < 4096; ++i) {
    plain[i] = static_cast<uint8_t>('a' + i % 3);
    stored[i] = static_cast<uint8_t>(i * 31 >> 3);
  }
  const bytes ten(plain.begin(), plain.begin() + 10);
  const bytes raw = concat({{0xFF, 0x3F}, stored});
  // 17 plain bytes, then copies whose distance has five bits and their length eleven.
  const bytes seventeen = {0x17, 0xB0, 0x00, '0', '1', '2', '3', '4',  '5', '6',  '7',  0x00, '8',
                           '9',  'a',  'b',  'c', 'd', 'e', 'f', 0x06, 'g', 0x00, 0x80, 0x01, 0x80};
  const bytes in_front = {0x02, 0xB0, 0x01, 0x00, 0x10};  // a copy from in front of the chunk
  const bytes full = concat({in_front, bytes(4096, 7)});
  const bytes no_header = concat({{0x34, 0x12}, bytes(4094, 9)});
  const bytes zeros(8192);
  const bytes late = concat({raw, in_front, bytes(8000, 7)});
  const bytes late_start(late.begin(), late.begin() + 8192);
  struct unit_case {
    const char* name;
    bytes unit;
    uint64_t wanted;
    bool usable;
    bytes out;
  };
  const unit_case cases[] = {
      {"one packed chunk", concat({packed, zeros}), 4096, true, plain},
      {"less is wanted", concat({packed, zeros}), 10, true, ten},
      {"raw chunk between packed ones", concat({packed, raw, packed}), 12288, true,
       concat({plain, stored, plain})},
      {"padding up to the next chunk", concat({packed, bytes(4088), packed}), 8192, true,
       concat({plain, plain})},
      {"a distance of five bits", seventeen, 24, true, as_bytes("0123456789abcdefg0123456")},
      {"a bad copy: stored as it is", full, 4101, true, full},
      {"a bad chunk behind others: stored as it is", late, 8192, true, late_start},
      {"a bad copy before zeros", concat({in_front, zeros}), 4096, false, {}},
      {"no chunk header", no_header, 10, true, concat({{0x34, 0x12}, bytes(8, 9)})},
      {"zeros", zeros, 4096, false, {}},
      {"nothing", {}, 4096, false, {}},
  };
  for (const unit_case& c : cases) {
    bytes out = {0x5A};
    EXPECT_EQ(ovrik::decompress_unit(out, ovrik::byte_view(c.unit), c.wanted), c.usable) << c.name;
    EXPECT_TRUE(out == concat({{0x5A}, c.out})) << c.name << ": " << out.size() << " bytes";
  }
}

}  // namespace
}  // namespace test_support
