#include "driver/opened_source.h"

#include <utility>

#include "base/clean_text.h"
#include "driver/container_words.h"
#include "driver/host/console.h"
#include "driver/host/host_console.h"
#include "driver/host/live_system.h"
#include "driver/vmdk_words.h"
#include "driver/volume_words.h"
#include "sources/disk/image_disk.h"
#include "sources/disk/retried_disk.h"
#include "sources/disk/vmdk_chain.h"
#include "sources/disk/volume_choice.h"

namespace ovrik {

namespace {

/// What stands in the way of reading a hive: in the volume or, around all of it, at the start.
container_kind kind_of_source(RAW_DISK_IO& disk, uint64_t volume_offset) {
  const container_kind volume = kind_of_container(disk, volume_offset);
  return volume != container_kind::none ? volume : kind_of_container(disk, 0);
}

/// Tells the diagnostics and whoever sits at a terminal what was chosen without being asked for.
void tell_choice(diagnostics_log& log, const std::string& text) {
  diag_printf(log, "%s", text.c_str());
  if (standard_error_is_terminal()) print_message("%s\n", text.c_str());
}

/// An image must have an NTFS volume at the offset asked for or, if none was, at its start.
bool open_image_disk(opened_source& opened, const source_options& source, diagnostics_log& log,
                     read_faults& faults) {
  opened.disk = retried_disk(open_image(source.path), source.path, faults);
  if (opened.disk == nullptr) {
    print_message("invalid image: %s\n\n", clean_text(source.path).c_str());
    return false;
  }
  const volume_choice choice =
      choose_volume(*opened.disk, source.volume_offset, source.ignore_image_size);
  opened.volume_offset = choice.offset;
  opened.kind = kind_of_source(*opened.disk, choice.offset);
  if (choice.outcome == volume_outcome::at_offset ||
      (source.volume_offset == 0 && choice.outcome == volume_outcome::cut_short)) {
    diag_printf(log, "%s", volume_road_text(choice).c_str());
    return true;
  }
  print_message("%s\n%s", volume_words(choice).c_str(), container_advice(opened.kind).c_str());
  return false;
}

/// The files must make up a disk with an NTFS volume at the offset asked for or anywhere.
bool open_virtual_disk(opened_source& opened, const source_options& source, diagnostics_log& log,
                       read_faults& faults) {
  vmdk_chain chain = check_vmdk_chain(source.vmdk_files, faults);
  if (!chain.complete) {
    print_message("%s\n", vmdk_words(chain).c_str());
    if (!chain.files.empty()) {
      print_message("suggested array: %s\n", vmdk_option_text(chain, "-vmdk").c_str());
    }
    print_message("%s", vmdk_advice(chain).c_str());
    return false;
  }
  if (chain.disk == nullptr) {
    print_message("invalid disk collection of snaps \n%s", vmdk_advice(chain).c_str());
    return false;
  }
  for (const std::string& file : chain.left_out) {
    tell_choice(log, "left out of the disk: " + file);
  }
  opened.disk = std::move(chain.disk);
  volume_choice choice =
      choose_volume(*opened.disk, source.volume_offset, source.ignore_image_size);
  // Without an offset the first partition is the one, if a table names the start of the disk.
  if (choice.offset == 0 && !choice.table_is_guess && !choice.partitions.empty()) {
    choice.offset = choice.partitions.front().byte_offset();
  }
  opened.volume_offset = choice.offset;
  opened.kind = chain.compressed_files.empty() ? kind_of_source(*opened.disk, choice.offset)
                                               : container_kind::vmdk_compressed;
  if (choice.has_volume()) {
    const std::string text = volume_road_text(choice);
    if (choice.offset != choice.asked_offset) {
      tell_choice(log, text);
    } else {
      diag_printf(log, "%s", text.c_str());
    }
    return true;
  }
  print_message("%s%s", volume_words(choice).c_str(), container_advice(opened.kind).c_str());
  return false;
}

}  // namespace

bool open_source(opened_source& opened, const source_options& source, diagnostics_log& log,
                 read_faults& faults) {
  opened.path = source.path;
  opened.volume_offset = source.volume_offset;
  switch (source.kind) {
    case source_kind::livesys:
      return find_live_hive(opened.path);
    case source_kind::shadow_copy:
      return check_shadow_copies();
    case source_kind::image:
      return open_image_disk(opened, source, log, faults);
    case source_kind::vmdk:
      return open_virtual_disk(opened, source, log, faults);
    case source_kind::none:
    case source_kind::extract:
    case source_kind::hive:
      break;
  }
  return true;
}

}  // namespace ovrik
