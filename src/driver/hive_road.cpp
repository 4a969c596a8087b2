#include "driver/hive_road.h"

#include <memory>
#include <utility>

#include "base/clean_text.h"
#include "driver/container_words.h"
#include "driver/hive_source.h"
#include "driver/host/console.h"
#include "driver/volume_source.h"
#include "hive/hive_root.h"

namespace ovrik {

namespace {

/// A hive to read and where in its container it lies.
struct found_hive {
  std::unique_ptr<reg_hive> hive;
  std::string inner_path;
};

found_hive open_hive(opened_source& source, source_kind kind, const hive_opening& opening) {
  const std::string& path = source.path;
  const volume_place place = {source.volume_offset, default_hive_path, opening};
  switch (kind) {
    case source_kind::image:
      return {open_image_hive(path, std::move(source.disk), place), place.inner_path};
    case source_kind::livesys:
      return {open_live_hive(path, place), place.inner_path};
    case source_kind::shadow_copy:
      return {open_shadow_copy_hive(path, place), path + place.inner_path};
    default:
      return {open_hive_source(path, opening), path};
  }
}

}  // namespace

int32_t run_hive_road(opened_source& source, source_kind kind, const hive_output& output) {
  if (source.path.empty()) return -1;
  const auto [hive, inner_path] = open_hive(source, kind, output.opening);
  if (hive == nullptr) {
    print_problem("Problem opening %s\n", clean_text(inner_path).c_str());
    print_message("%s", container_advice(source.kind).c_str());
    return -1;
  }
  if (!is_system_hive(*hive)) return -1;
  const hive_outcome outcome = print_hive(output, *hive, source.path);
  if (outcome == hive_outcome::nothing_found) {
    print_problem("probs parsing from %s\n", clean_text(source.path).c_str());
  }
  return outcome == hive_outcome::found ? 0 : -1;
}

}  // namespace ovrik
