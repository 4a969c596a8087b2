#include "driver/plain_hive.h"

#include <utility>

#include "base/text.h"
#include "hive/hive_root.h"
#include "sources/host/file_source.h"

namespace ovrik {

std::unique_ptr<reg_hive> open_plain_hive(const std::string& path, const hive_opening& opening) {
  auto file = open_file_source(path);
  if (file == nullptr) return nullptr;
  bool ok = false;
  auto hive = std::make_unique<reg_hive>(source_reader(std::move(file), path), limits_of_hive_files,
                                         opening.faults, ok);
  if (!ok) return nullptr;
  return hive;
}

bool is_system_hive(const reg_hive& hive) {
  uint32_t root_offset = 0;
  std::string kind_name;
  return find_root(hive, root_offset, kind_name) &&
         lower_ascii(kind_name).find("system") != std::string::npos;
}

}  // namespace ovrik
