#include "driver/chunk_folder.h"

#include <algorithm>
#include <string_view>

#include "base/byte_view.h"
#include "sources/host/file_places.h"
#include "sources/host/fileio.h"
#include "sources/host/host_path.h"
#include "sources/host/lv_portable_dir.h"

namespace ovrik {

namespace {

bool take_front(std::string_view& text, std::string_view front) {
  if (!text.starts_with(front)) return false;
  text.remove_prefix(front.size());
  return true;
}

bool is_chunk_name(std::string_view name) {
  if (name == "stats.txt") return true;
  if (!take_front(name, "chunk_")) return false;
  const size_t digits = std::min(name.find_first_not_of("0123456789"), name.size());
  if (digits == 0 || (digits > 1 && name.front() == '0')) return false;
  name.remove_prefix(digits);
  return name == ".bin" || name == "_other.bin";
}

bool begins_like_a_source(const std::string& path) {
  std::vector<uint8_t> start;
  constexpr size_t signature_size = 4;
  if (!uni::read_whole(start, path, signature_size)) return false;
  const byte_view view(start);
  return view.text_at(0, "regf") || view.text_at(0, "KDMV");
}

}  // namespace

std::string chunk_folder_path(const std::string& name) {
  return std::string(chunk_folder) + host_separator() + name;
}

std::vector<std::string> earlier_chunk_files() {
  std::vector<lvportdir::directory_entry> entries;
  lvportdir::list_directory(entries, chunk_folder);
  std::vector<std::string> names;
  for (const lvportdir::directory_entry& entry : entries) {
    const std::string name = last_component(entry.path);
    if (entry.is_directory || !is_chunk_name(name) || !lvportdir::is_plain_file(entry.path) ||
        begins_like_a_source(entry.path)) {
      continue;
    }
    names.push_back(name);
  }
  return names;
}

bool is_foreign_in_chunk_folder(const std::string& name) {
  const std::string path = chunk_folder_path(name);
  return lvportdir::is_plain_file(path) && begins_like_a_source(path);
}

}  // namespace ovrik
