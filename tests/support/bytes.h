// Little-endian byte blocks: what every builder composes and every test damages.

#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace test_support {

using bytes = std::vector<uint8_t>;

// A place outside of a block is a std::out_of_range.

/// Overwrites the number of `width` bytes at `at`.
inline void put_number(bytes& block, size_t at, size_t width, uint64_t value) {
  for (size_t i = 0; i < width; ++i) block.at(at + i) = static_cast<uint8_t>(value >> (8 * i));
}
inline void put_u16(bytes& block, size_t at, uint16_t value) { put_number(block, at, 2, value); }
inline void put_u32(bytes& block, size_t at, uint32_t value) { put_number(block, at, 4, value); }
inline void put_u64(bytes& block, size_t at, uint64_t value) { put_number(block, at, 8, value); }

/// Overwrites the bytes from `at` on with `part`.
inline void put(bytes& block, size_t at, const bytes& part) {
  for (size_t i = 0; i < part.size(); ++i) block.at(at + i) = part[i];
}

inline uint64_t get_number(const bytes& block, size_t at, size_t width) {
  uint64_t value = 0;
  for (size_t i = width; i > 0; --i) value = value << 8 | block.at(at + i - 1);
  return value;
}
inline uint16_t get_u16(const bytes& block, size_t at) {
  return static_cast<uint16_t>(get_number(block, at, 2));
}
inline uint32_t get_u32(const bytes& block, size_t at) {
  return static_cast<uint32_t>(get_number(block, at, 4));
}
inline uint64_t get_u64(const bytes& block, size_t at) { return get_number(block, at, 8); }

inline void append_number(bytes& block, size_t width, uint64_t value) {
  block.resize(block.size() + width);
  put_number(block, block.size() - width, width, value);
}
inline void append_u16(bytes& block, uint16_t value) { append_number(block, 2, value); }
inline void append_u32(bytes& block, uint32_t value) { append_number(block, 4, value); }
inline void append_u64(bytes& block, uint64_t value) { append_number(block, 8, value); }
inline void append(bytes& block, const bytes& part) {
  block.insert(block.end(), part.begin(), part.end());
}
inline void append(bytes& block, std::string_view part) {
  block.insert(block.end(), part.begin(), part.end());
}
inline void append_utf16(bytes& block, std::u16string_view text) {
  for (const char16_t unit : text) append_u16(block, unit);
}

inline bytes as_bytes(std::string_view text) { return bytes(text.begin(), text.end()); }
inline std::string as_text(const bytes& block) { return std::string(block.begin(), block.end()); }

/// The parts one behind the other.
bytes concat(const std::vector<bytes>& parts);

/// The whole file; std::runtime_error if it cannot be opened.
bytes read_file(const std::filesystem::path& path);

/// Creates or replaces the file; std::runtime_error if it cannot be written.
void write_file(const std::filesystem::path& path, const bytes& content);
void write_file(const std::filesystem::path& path, std::string_view content);

/// The UTC time as a FILETIME; `ticks` are the 100-nanosecond units of the last second.
uint64_t filetime(int year, unsigned month, unsigned day, unsigned hour = 0, unsigned minute = 0,
                  unsigned second = 0, uint64_t ticks = 0);

}  // namespace test_support
