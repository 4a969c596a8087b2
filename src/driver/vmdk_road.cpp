#include "driver/vmdk_road.h"

#include <utility>

#include "base/clean_text.h"
#include "driver/container_words.h"
#include "driver/host/console.h"
#include "driver/volume_source.h"
#include "hive/hive_root.h"

namespace ovrik {

int32_t run_vmdk_road(opened_source& source, const hive_output& output) {
  const auto nothing_opened = [&source] {
    print_problem("Problem opening %s\n", default_hive_path);
    print_message("%s", container_advice(source.kind).c_str());
  };
  const auto volume = std::make_shared<ntfs_volume>(std::move(source.disk), source.volume_offset);
  if (!volume->mount()) {
    nothing_opened();
    return -1;
  }
  const auto hive = read_volume_hive(volume, default_hive_path, output.opening);
  if (hive == nullptr || !is_system_hive(*hive)) {
    nothing_opened();
    return 0;
  }
  if (print_hive(output, *hive, source.path) == hive_outcome::nothing_found) {
    print_problem("probs parsing from %s\n", clean_text(source.path).c_str());
  }
  return 0;
}

}  // namespace ovrik
