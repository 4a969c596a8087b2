#include "driver/hive_source.h"

#include "base/text.h"
#include "driver/wow64_redirect_adt.h"

namespace ovrik {

std::unique_ptr<reg_hive> open_hive_source(const std::string& path) {
  const wow64_redirect_adt guard;
  bool ok = false;
  auto hive = std::make_unique<reg_hive>(path, ok);
  if (!ok) return nullptr;
  return hive;
}

bool is_system_hive(const reg_hive& hive) {
  uint32_t root_offset = 0;
  std::string kind_name;
  return hive.get_root(root_offset, kind_name) &&
         lower_ascii(kind_name).find("system") != std::string::npos;
}

}  // namespace ovrik
