#include "hive/reg_clas.h"

#include <algorithm>
#include <vector>

#include "hive/hive_header.h"
#include "hive/reg_key.h"
#include "sources/fileio.h"

namespace ovrik {

namespace {

constexpr uint64_t largest_hive_file = 0x2FFFFFFF;
constexpr uint64_t header_search_bytes = 0x10000;

struct telling_subkey {
  const char* subkey;
  const char* hive_name;
};

constexpr telling_subkey telling_subkeys[] = {
    {"Select", "System"},    {"control panel", "ntuser.dat"},
    {"Classes", "Software"}, {"local settings", "usrclass.dat"},
    {"sam", "SAM"},          {"RXACT", "Security"},
    {"root", "AmCache.bin"},
};

}  // namespace

reg_hive::reg_hive(const std::string& path, bool& ok) {
  ok = false;
  uni::fileio file;
  if (!file.open_read(path)) return;
  const uint64_t size = file.length();
  if (size <= least_hive_bytes || size > largest_hive_file) return;

  // A wrong file costs no more than this one short read.
  std::vector<uint8_t> scratch(static_cast<size_t>(std::min(size, header_search_bytes)));
  size_t read = scratch.size();
  file.read_at(scratch.data(), read, 0);
  if (!check_hive_header(byte_view(scratch), size, m_root_offset, m_name)) return;

  if (!m_image.allocate(static_cast<size_t>(size))) return;
  read = m_image.size();
  file.read_at(m_image.data(), read, 0);  // what the medium does not give stays zero
  ok = true;
}

std::optional<byte_view> reg_hive::cell_at(uint32_t pos) const {
  const int64_t place = static_cast<int32_t>(pos);
  if (place > size() || -place > int64_t{size()}) return std::nullopt;
  if (place < 0) return byte_view();
  return byte_view(m_image.data(), m_image.size()).from(static_cast<uint64_t>(place));
}

bool reg_hive::get_root(uint32_t& root_offset, std::string& name) const {
  if (!usable()) return false;
  root_offset = m_root_offset;
  name = m_name;
  for (const telling_subkey& telling : telling_subkeys) {
    if (!name.empty()) break;
    if (has_subkey(*this, root_offset, telling.subkey)) name = telling.hive_name;
  }
  return true;
}

}  // namespace ovrik
