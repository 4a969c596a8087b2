#include "driver/hive_source.h"

#include "base/text.h"
#include "driver/plain_hive.h"
#include "driver/volume_source.h"
#include "sources/host/fileio.h"

namespace ovrik {

namespace {

bool begins_with_drive(const std::string& path) {
  return path.size() > 2 && path[1] == ':' && lower_ascii(path)[0] >= 'a' &&
         lower_ascii(path)[0] <= 'z';
}

}  // namespace

std::unique_ptr<reg_hive> open_hive_source(const std::string& path, diagnostics_log& log,
                                           const device_calls& devices) {
  if (auto hive = open_plain_hive(path)) return hive;
  // What opens and is no hive is none on its volume either.
  if (!begins_with_drive(path) || uni::file_opens(path)) return nullptr;
  std::string inner = path.substr(2);
  replace_all(inner, '/', '\\');
  return open_live_hive(path, {.inner_path = inner, .log = log, .devices = devices});
}

}  // namespace ovrik
