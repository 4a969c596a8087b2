#include "support/bytes.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace test_support {
namespace {

void check_inside(const bytes& block, size_t at, size_t count) {
  if (at > block.size() || count > block.size() - at) {
    throw std::out_of_range("outside the block: " + std::to_string(at));
  }
}

template <typename number>
void put_number(bytes& block, size_t at, number value) {
  check_inside(block, at, sizeof(number));
  for (size_t i = 0; i < sizeof(number); ++i) {
    block[at + i] = static_cast<uint8_t>(uint64_t{value} >> (8 * i));
  }
}

template <typename number>
number get_number(const bytes& block, size_t at) {
  check_inside(block, at, sizeof(number));
  uint64_t value = 0;
  for (size_t i = 0; i < sizeof(number); ++i) value |= uint64_t{block[at + i]} << (8 * i);
  return static_cast<number>(value);
}

template <typename number>
void append_number(bytes& block, number value) {
  block.resize(block.size() + sizeof(number));
  put_number(block, block.size() - sizeof(number), value);
}

}  // namespace

void put_u16(bytes& block, size_t at, uint16_t value) { put_number(block, at, value); }
void put_u32(bytes& block, size_t at, uint32_t value) { put_number(block, at, value); }
void put_u64(bytes& block, size_t at, uint64_t value) { put_number(block, at, value); }

void put(bytes& block, size_t at, const bytes& part) {
  check_inside(block, at, part.size());
  std::copy(part.begin(), part.end(), block.begin() + static_cast<std::ptrdiff_t>(at));
}

uint16_t get_u16(const bytes& block, size_t at) { return get_number<uint16_t>(block, at); }
uint32_t get_u32(const bytes& block, size_t at) { return get_number<uint32_t>(block, at); }
uint64_t get_u64(const bytes& block, size_t at) { return get_number<uint64_t>(block, at); }

void append_u16(bytes& block, uint16_t value) { append_number(block, value); }
void append_u32(bytes& block, uint32_t value) { append_number(block, value); }
void append_u64(bytes& block, uint64_t value) { append_number(block, value); }

void append(bytes& block, const bytes& part) {
  block.insert(block.end(), part.begin(), part.end());
}

void append(bytes& block, std::string_view part) {
  block.insert(block.end(), part.begin(), part.end());
}

void append_utf16(bytes& block, std::u16string_view text) {
  for (const char16_t unit : text) append_u16(block, static_cast<uint16_t>(unit));
}

bytes as_bytes(std::string_view text) { return bytes(text.begin(), text.end()); }
std::string as_text(const bytes& block) { return std::string(block.begin(), block.end()); }

bytes read_file(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path.string());
  return bytes(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

void write_file(const std::filesystem::path& path, const bytes& content) {
  write_file(path, as_text(content));
}

void write_file(const std::filesystem::path& path, std::string_view content) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(content.data(), static_cast<std::streamsize>(content.size()));
  if (!file.flush()) throw std::runtime_error("cannot write " + path.string());
}

uint64_t filetime(int year, unsigned month, unsigned day, unsigned hour, unsigned minute,
                  unsigned second, uint64_t ticks) {
  using namespace std::chrono;
  const sys_days first = std::chrono::year{1601} / January / 1;
  const sys_days last = std::chrono::year{year} / std::chrono::month{month} / std::chrono::day{day};
  const auto passed = (last - first).count();
  const uint64_t seconds =
      static_cast<uint64_t>(passed) * 86400 + uint64_t{hour} * 3600 + minute * 60 + second;
  return seconds * 10'000'000 + ticks;
}

}  // namespace test_support
