#include "driver/hive_source.h"

#include "base/drive_letter.h"
#include "base/text.h"
#include "driver/volume_source.h"
#include "sources/host/fileio.h"

namespace ovrik {

namespace {

/// False also if the file is locked.
bool opens(const std::string& path) {
  uni::fileio file;
  return file.open_read(path);
}

bool has_drive_letter(const std::string& path) {
  return path.size() > 2 && begins_with_drive(path) && is_drive_letter(path[0]);
}

}  // namespace

std::unique_ptr<reg_hive> open_plain_hive(const std::string& path) {
  bool ok = false;
  auto hive = std::make_unique<reg_hive>(path, ok);
  if (!ok) return nullptr;
  return hive;
}

std::unique_ptr<reg_hive> open_hive_source(const std::string& path, diagnostics_log& log,
                                           const device_calls& devices) {
  if (auto hive = open_plain_hive(path)) return hive;
  // What opens and is no hive is none on its volume either.
  if (!has_drive_letter(path) || opens(path)) return nullptr;
  std::string inner = path.substr(2);
  replace_all(inner, '/', '\\');
  return open_live_hive(path, {.inner_path = inner, .log = log, .devices = devices});
}

bool is_system_hive(const reg_hive& hive) {
  uint32_t root_offset = 0;
  std::string kind_name;
  return hive.get_root(root_offset, kind_name) &&
         lower_ascii(kind_name).find("system") != std::string::npos;
}

}  // namespace ovrik
