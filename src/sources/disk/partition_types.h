// The types of partitions: the type byte of an MBR partition record, and those values of it that
// the readers set or look for.
#pragma once

#include <cstdint>
#include <string>

namespace ovrik {

namespace partition_type {
constexpr uint8_t fat16 = 4;
constexpr uint8_t extended = 5;
constexpr uint8_t ntfs = 7;  ///< and exFAT
constexpr uint8_t fat32 = 12;
constexpr uint8_t extended_lba = 15;
constexpr uint8_t linux_data = 131;
constexpr uint8_t hfs = 175;
constexpr uint8_t gpt = 238;  ///< stands for a whole disk whose partitions a GPT names
}  // namespace partition_type

/// The name of a partition's type, which may have the guess bit; then with " [guess]" behind it.
std::string partition_type_name(uint16_t type);

/// True if the name of the type says NTFS.
bool is_ntfs_type(uint16_t type);

/// True for a type byte that a table entry may have.
bool is_known_partition_type(uint8_t type);

}  // namespace ovrik
