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

/// Overwrites the number at `at`, which must lie wholly inside: std::out_of_range if not.
void put_u16(bytes& block, size_t at, uint16_t value);
void put_u32(bytes& block, size_t at, uint32_t value);
void put_u64(bytes& block, size_t at, uint64_t value);

/// Overwrites the bytes from `at` on with `part`, which must fit: std::out_of_range if not.
void put(bytes& block, size_t at, const bytes& part);

/// Reads the number at `at`, which must lie wholly inside: std::out_of_range if not.
uint16_t get_u16(const bytes& block, size_t at);
uint32_t get_u32(const bytes& block, size_t at);
uint64_t get_u64(const bytes& block, size_t at);

void append_u16(bytes& block, uint16_t value);
void append_u32(bytes& block, uint32_t value);
void append_u64(bytes& block, uint64_t value);
void append(bytes& block, const bytes& part);
void append(bytes& block, std::string_view part);
void append_utf16(bytes& block, std::u16string_view text);

bytes as_bytes(std::string_view text);
std::string as_text(const bytes& block);

/// The whole file; std::runtime_error if it cannot be opened.
bytes read_file(const std::filesystem::path& path);

/// Creates or replaces the file; std::runtime_error if it cannot be written.
void write_file(const std::filesystem::path& path, const bytes& content);
void write_file(const std::filesystem::path& path, std::string_view content);

/// The UTC time as a FILETIME; `ticks` are the 100-nanosecond units of the last second.
uint64_t filetime(int year, unsigned month, unsigned day, unsigned hour = 0, unsigned minute = 0,
                  unsigned second = 0, uint64_t ticks = 0);

}  // namespace test_support
