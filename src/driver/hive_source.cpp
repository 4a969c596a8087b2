#include "driver/hive_source.h"

#include "base/text.h"
#include "driver/volume_source.h"
#include "hive/hive_root.h"
#include "sources/host/fileio.h"

namespace ovrik {

namespace {

/// False also for what is held so that not even its bytes can be had.
bool opens(const std::string& path) {
  uni::fileio file;
  return file.open_read(path);
}

bool begins_with_drive(const std::string& path) {
  return path.size() > 2 && path[1] == ':' && lower_ascii(path)[0] >= 'a' &&
         lower_ascii(path)[0] <= 'z';
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
  if (!begins_with_drive(path) || opens(path)) return nullptr;
  std::string inner = path.substr(2);
  replace_all(inner, '/', '\\');
  return open_live_hive(path, {.inner_path = inner, .log = log, .devices = devices});
}

bool is_system_hive(const reg_hive& hive) {
  uint32_t root_offset = 0;
  std::string kind_name;
  return find_root(hive, root_offset, kind_name) &&
         lower_ascii(kind_name).find("system") != std::string::npos;
}

}  // namespace ovrik
