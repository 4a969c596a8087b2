#include "driver/container_words.h"

#include <algorithm>
#include <iterator>

namespace ovrik {

namespace {

struct advice {
  container_kind kind;
  const char* step;
};

constexpr const char* to_raw = "convert it (qemu-img convert -O raw) and give the result to -image";
constexpr const char* to_one_file =
    "convert the whole disk, by its descriptor, to one file (qemu-img convert -O vmdk) and give "
    "that to -vmdk";

constexpr advice all_advice[] = {
    {container_kind::vmdk, "give it to -vmdk"},
    {container_kind::vmdk_compressed,
     "its grains are compressed: convert it (qemu-img convert -O vmdk) and give the result to "
     "-vmdk"},
    {container_kind::vmdk_extent, to_one_file},
    {container_kind::vmdk_descriptor, to_one_file},
    {container_kind::vmdk_esx, to_one_file},
    {container_kind::vdi, to_raw},
    {container_kind::qcow, to_raw},
    {container_kind::vhd, to_raw},
    {container_kind::vhdx, to_raw},
    {container_kind::ewf, "export it as a raw image (ewfexport) and give that to -image"},
    {container_kind::aff, "convert it to a raw image (affconvert -r) and give that to -image"},
    {container_kind::luks, "unlock it (cryptsetup) and give the result"},
    {container_kind::bitlocker, "unlock it (dislocker) and give the result"},
    {container_kind::exfat, "Windows does not start from one: choose another volume"},
    {container_kind::refs, "it is not read: copy the hive out of it and give that to -hive"},
};

/// What stands in front of the name of the format.
const char* subject_of(container_kind kind) {
  switch (kind) {
    case container_kind::vmdk_extent:
      return "this is one part of a disk in several files of the form ";
    case container_kind::vmdk_descriptor:
      return "this is only the descriptor of a disk of the form ";
    case container_kind::luks:
    case container_kind::bitlocker:
      return "the volume is encrypted by ";
    case container_kind::exfat:
    case container_kind::refs:
      return "the volume is ";
    default:
      return "this is a disk of the form ";
  }
}

}  // namespace

std::string container_advice(container_kind kind) {
  const auto* row = std::find_if(std::begin(all_advice), std::end(all_advice),
                                 [kind](const advice& a) { return a.kind == kind; });
  if (row == std::end(all_advice)) return "";
  return std::string(subject_of(kind)) + container_name(kind) + ": " + row->step + '\n';
}

}  // namespace ovrik
