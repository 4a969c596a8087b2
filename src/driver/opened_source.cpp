#include "driver/opened_source.h"

#include <utility>

#include "driver/host/console.h"
#include "driver/host/live_system.h"
#include "driver/vmdk_words.h"
#include "driver/volume_words.h"
#include "sources/disk/image_disk.h"
#include "sources/disk/retried_disk.h"
#include "sources/disk/vmdk_chain.h"
#include "sources/disk/volume_choice.h"

namespace ovrik {

namespace {

/// An image must have an NTFS volume at the offset asked for or, if none was, at its start.
bool open_image_disk(opened_source& opened, const source_options& source, read_faults& faults) {
  opened.disk = retried_disk(open_image(source.path), source.path, faults);
  if (opened.disk == nullptr) {
    print_message("invalid image: %s\n\n", source.path.c_str());
    return false;
  }
  const volume_choice choice =
      choose_volume(*opened.disk, source.volume_offset, source.ignore_image_size);
  opened.volume_offset = choice.offset;
  if (choice.outcome == volume_outcome::at_offset) return true;
  if (source.volume_offset == 0 && choice.outcome == volume_outcome::cut_short) return true;
  print_message("%s\n", volume_words(choice).c_str());
  return false;
}

/// The files must make up a disk with an NTFS volume at the offset asked for or anywhere.
bool open_virtual_disk(opened_source& opened, const source_options& source, read_faults& faults) {
  vmdk_chain chain = check_vmdk_chain(source.vmdk_files, faults);
  if (!chain.complete) {
    print_message("%s\n", vmdk_words(chain).c_str());
    if (!chain.files.empty()) {
      print_message("suggested array: %s\n", vmdk_option_text(chain, "-vmdk").c_str());
    }
    return false;
  }
  if (chain.disk == nullptr) {
    print_message("invalid disk collection of snaps \n");
    return false;
  }
  opened.disk = std::move(chain.disk);
  const volume_choice choice =
      choose_volume(*opened.disk, source.volume_offset, source.ignore_image_size);
  opened.volume_offset = choice.offset;
  if (choice.has_volume()) return true;
  print_message("%s", volume_words(choice).c_str());
  return false;
}

}  // namespace

bool open_source(opened_source& opened, const source_options& source, read_faults& faults) {
  opened.path = source.path;
  opened.volume_offset = source.volume_offset;
  switch (source.kind) {
    case source_kind::livesys:
      return find_live_hive(opened.path);
    case source_kind::shadow_copy:
      return check_shadow_copies();
    case source_kind::image:
      return open_image_disk(opened, source, faults);
    case source_kind::vmdk:
      return open_virtual_disk(opened, source, faults);
    case source_kind::none:
    case source_kind::extract:
    case source_kind::hive:
      break;
  }
  return true;
}

}  // namespace ovrik
