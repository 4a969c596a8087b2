// Units of NTFS compression, byte by byte.
#include "sources/lznt1.h"

#include <gtest/gtest.h>

#include "support/bytes.h"

namespace test_support {
namespace {

bytes joined(const std::vector<bytes>& parts) {
  bytes all;
  for (const bytes& part : parts) append(all, part);
  return all;
}

bytes zeros_behind(bytes unit, size_t size = 8192) {
  unit.resize(size);
  return unit;
}

// "abc" and a copy of 4093 bytes from three back: 4096 bytes in all.
const bytes packed_abc = {0x05, 0xB0, 0x08, 'a', 'b', 'c', 0xFA, 0x2F};

bytes plain_abc(size_t size) {
  bytes text(size);
  for (size_t i = 0; i < size; ++i) text[i] = static_cast<uint8_t>('a' + i % 3);
  return text;
}

TEST(lznt1, chunks_of_all_kinds_give_their_bytes) {
  const bytes raw = {0xFF, 0x3F};
  bytes stored(4096);
  for (size_t i = 0; i < stored.size(); ++i) stored[i] = static_cast<uint8_t>(i * 31 >> 3);
  // 17 plain bytes, then copies whose distance has five bits and their length eleven.
  bytes seventeen = {0x17, 0xB0, 0x00, '0', '1', '2', '3', '4',  '5', '6',  '7',  0x00, '8',
                     '9',  'a',  'b',  'c', 'd', 'e', 'f', 0x06, 'g', 0x00, 0x80, 0x01, 0x80};
  struct unit_case {
    const char* name;
    bytes unit;
    uint64_t wanted;
    bool usable;
    bytes out;
  };
  const unit_case cases[] = {
      {"one packed chunk", zeros_behind(packed_abc), 4096, true, plain_abc(4096)},
      {"less is wanted", zeros_behind(packed_abc), 10, true, plain_abc(10)},
      {"raw chunk", zeros_behind(joined({raw, stored})), 4096, true, stored},
      {"raw chunk between packed ones", zeros_behind(joined({packed_abc, raw, stored, packed_abc})),
       12288, true, joined({plain_abc(4096), stored, plain_abc(4096)})},
      {"padding up to the next chunk", joined({zeros_behind(packed_abc, 4096), packed_abc}), 8192,
       true, joined({plain_abc(4096), plain_abc(4096)})},
      {"a distance of five bits", seventeen, 24, true, as_bytes("0123456789abcdefg0123456")},
      {"copy from in front of the chunk, stored as it is",
       joined({{0x02, 0xB0, 0x01, 0x00, 0x10}, bytes(4096, 7)}), 4101, true,
       joined({{0x02, 0xB0, 0x01, 0x00, 0x10}, bytes(4096, 7)})},
      {"the same before zeros", zeros_behind({0x02, 0xB0, 0x01, 0x00, 0x10}), 4096, false, {}},
      {"no chunk header", joined({{0x34, 0x12}, bytes(4094, 9)}), 100, true,
       joined({{0x34, 0x12}, bytes(98, 9)})},
      {"zeros", bytes(65536), 4096, false, {}},
      {"nothing", {}, 4096, false, {}},
  };
  for (const unit_case& c : cases) {
    bytes out = {0x5A};
    EXPECT_EQ(ovrik::decompress_unit(out, ovrik::byte_view(c.unit), c.wanted), c.usable) << c.name;
    EXPECT_TRUE(out == joined({{0x5A}, c.out})) << c.name << ": " << out.size() << " bytes";
  }
}

}  // namespace
}  // namespace test_support
