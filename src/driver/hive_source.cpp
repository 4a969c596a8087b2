#include "driver/hive_source.h"

#include "base/drive_letter.h"
#include "base/text.h"
#include "driver/plain_hive.h"
#include "driver/volume_source.h"
#include "sources/host/fileio.h"

namespace ovrik {

namespace {

bool has_drive_letter(const std::string& path) {
  return path.size() > 2 && begins_with_drive(path) && is_drive_letter(path[0]);
}

}  // namespace

std::unique_ptr<reg_hive> open_hive_source(const std::string& path, const hive_opening& opening,
                                           const device_calls& devices) {
  if (auto hive = open_plain_hive(path, opening)) return hive;
  // What opens and is no hive is none on its volume either.
  if (!has_drive_letter(path) || uni::file_opens(path)) return nullptr;
  std::string inner = path.substr(2);
  replace_all(inner, '/', '\\');
  return open_live_hive(path, {.inner_path = inner, .opening = opening, .devices = devices});
}

}  // namespace ovrik
