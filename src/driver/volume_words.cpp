#include "driver/volume_words.h"

#include "base/number_text.h"
#include "sources/disk/partition_types.h"

namespace ovrik {

namespace {

std::string place_text(uint64_t offset) { return "volume offset 0x" + hex_text(offset); }

std::string outside_text(uint64_t offset) {
  return place_text(offset) + " is not within image bounds\n";
}

std::string finding_text(const partition_finding& finding) {
  const uint64_t offset = finding.partition.byte_offset();
  if (finding.fault == partition_fault::begins_outside) return outside_text(offset);
  return "volume offset selected 0x" + hex_text(offset) + " is not a NTFS partition, but [" +
         partition_type_name(finding.partition.type) + "]\n";
}

std::string list_text(const partition_list& partitions) {
  std::string text = "\n";
  for (const partition_info& partition : partitions) {
    text += "volume offset [ 0x" + hex_text(partition.byte_offset()) +
            " ] : " + partition_type_name(partition.type) + '\n';
  }
  return text + '\n';
}

/// What is known of the partition that begins at the volume's offset.
std::string partition_text(const volume_choice& choice) {
  if (choice.partitions.empty()) return "the disk has no partition table";
  const partition_info* const partition = choice.partition();
  if (partition == nullptr) return "no partition table names it";
  size_t number = 1;
  for (const partition_info& other : choice.partitions) {
    if (&other == partition) break;
    ++number;
  }
  return "partition " + decimal_text(number) + " of " + decimal_text(choice.partitions.size()) +
         " (" + partition_type_name(partition->type) + ")";
}

}  // namespace

std::string volume_road_text(const volume_choice& choice) {
  std::string text =
      "volume read: offset 0x" + hex_text(choice.offset) + ", " + partition_text(choice);
  if (choice.offset != choice.asked_offset) {
    text += "; asked for: offset 0x" + hex_text(choice.asked_offset);
  }
  if (choice.table_is_guess) text += "; the table is a stray one";
  if (!choice.partitions.empty() && choice.partitions.front().from_backup) {
    text += "; the first GPT is damaged, its backup was taken";
  }
  return text;
}

std::string volume_words(const volume_choice& choice) {
  std::string text;
  if (choice.table_is_guess) text += "disk is corrupted, partition info questionable\n";
  for (const partition_finding& finding : choice.findings) text += finding_text(finding);
  switch (choice.outcome) {
    case volume_outcome::at_offset:
      return "";
    case volume_outcome::offset_outside:
      return outside_text(choice.asked_offset);
    case volume_outcome::no_partitions:
      return "couldn't find any partitions on disk\n";
    case volume_outcome::cut_short:
      return text + place_text(choice.offset) +
             " is a NTFS partition, however image size does not encapsulate entire volume\n";
    case volume_outcome::other_offset:
      return text + list_text(choice.partitions) + "use option [-offset 0x" +
             hex_text(choice.offset) + "]\n";
    case volume_outcome::no_ntfs:
      return text + list_text(choice.partitions) + "prob detecting ntfs partition\n";
  }
  return text;
}

}  // namespace ovrik
