#include "support/bytes.h"

#include <chrono>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace test_support {

bytes concat(const std::vector<bytes>& parts) {
  bytes all;
  for (const bytes& part : parts) append(all, part);
  return all;
}

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
  const year_month_day date{std::chrono::year(year), std::chrono::month(month),
                            std::chrono::day(day)};
  const auto days = static_cast<uint64_t>((sys_days(date) - sys_days(1601y / 1 / 1)).count());
  return (((days * 24 + hour) * 60 + minute) * 60 + second) * 10'000'000 + ticks;
}

}  // namespace test_support
