#include "sources/disk/partition_types.h"

#include <algorithm>

#include "sources/disk/partition_info.h"

namespace ovrik {

namespace {

struct type_range {
  uint8_t first;
  uint8_t last;
};

// Partition types that have ever been given to a system.
constexpr type_range known_types[] = {
    {0x01, 0x01}, {0x04, 0x08}, {0x0B, 0x0C}, {0x0E, 0x0F}, {0x11, 0x12}, {0x14, 0x16},
    {0x1B, 0x1C}, {0x1E, 0x1F}, {0x24, 0x24}, {0x27, 0x27}, {0x41, 0x43}, {0x56, 0x56},
    {0x64, 0x64}, {0x66, 0x66}, {0x74, 0x74}, {0x76, 0x76}, {0x79, 0x7D}, {0x80, 0x88},
    {0x8B, 0x8C}, {0x8E, 0x8E}, {0x90, 0x93}, {0x97, 0x98}, {0x9A, 0x9A}, {0xA8, 0xA8},
    {0xAB, 0xAC}, {0xAF, 0xAF}, {0xB6, 0xB7}, {0xBB, 0xBC}, {0xC2, 0xC7}, {0xCB, 0xCF},
    {0xD4, 0xD6}, {0xD8, 0xD8}, {0xDE, 0xDE}, {0xE4, 0xE6}, {0xE8, 0xE8}, {0xEF, 0xF0},
    {0xF2, 0xF2}, {0xF4, 0xF4}, {0xF6, 0xF6}, {0xF9, 0xF9}, {0xFB, 0xFE},
};

struct type_name {
  uint8_t type;
  const char* name;
};

// The names that a user sees; a type that is not in the list is "unk".
constexpr type_name type_names[] = {
    {0, "empty"},
    {1, "fat12"},
    {2, "xenix root"},
    {3, "xenix /usr"},
    {4, "fat16"},
    {5, "exten"},
    {6, "fat"},
    {7, "ntfs or exfat"},
    {8, "aix boot"},
    {9, "aix data"},
    {10, "os/2 boot"},
    {11, "fat32"},
    {12, "fat32"},
    {14, "fat16 LBA mapped"},
    {15, "exten"},
    {17, "hidden fat16"},
    {20, "hidden fat16"},
    {22, "hidden fat16"},
    {23, "hidden ntfs"},
    {27, "hidden fat32"},
    {28, "hidden fat32"},
    {30, "hidden fat16"},
    {39, "hidden ntfs"},
    {130, "linux swap"},
    {131, "linux"},
    {134, "fat16 volume set"},
    {135, "ntfs volume set"},
    {136, "linux partition table"},
    {139, "fat32 fault tolerant"},
    {140, "fat32 fault tolerant"},
    {141, "fat12"},
    {142, "linux Logical Volume Mgr"},
    {144, "hidden fat16"},
    {145, "hidden fat16"},
    {146, "hidden fat16"},
    {147, "hidden linux"},
    {151, "hidden fat32"},
    {152, "hidden fat32"},
    {160, "hibernation partition"},
    {161, "hibernation partition"},
    {166, "openbsd"},
    {175, "hfs"},
    {238, "gpt"},
};

}  // namespace

bool is_known_partition_type(uint8_t type) {
  return std::any_of(std::begin(known_types), std::end(known_types),
                     [type](const type_range& r) { return type >= r.first && type <= r.last; });
}

std::string partition_type_name(uint16_t type) {
  const auto* row = std::find_if(std::begin(type_names), std::end(type_names),
                                 [type](const type_name& n) { return n.type == (type & 0xFF); });
  const std::string name = row == std::end(type_names) ? "unk" : row->name;
  return (type & partition_info::guess_bit) != 0 ? name + " [guess]" : name;
}

bool is_ntfs_type(uint16_t type) {
  return partition_type_name(type).find("ntfs") != std::string::npos;
}

}  // namespace ovrik
