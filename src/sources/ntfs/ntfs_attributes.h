// The attributes of a file that stand in other records than its own.
#pragma once

#include <cstdint>
#include <functional>

#include "base/diagnostics_log.h"
#include "sources/ntfs/ntfs_record.h"
#include "sources/ntfs/ntfs_volume.h"

namespace ovrik {

/// How strictly the record that a list names must be the one that the list means.
enum class list_trust {
  same_sequence,  ///< its sequence number must be the one in the list
  any_record,     ///< a record that was used anew counts too
};

/// Is given each attribute and the record that holds it; both go away afterwards.
using attribute_visitor = std::function<void(byte_view holder, const ntfs_attribute& attribute)>;

/// Visits the attributes that the $ATTRIBUTE_LIST of `record`, which is `entry`, names in other
/// records, in the order of the list. One that cannot be read or is not where the list says is left
/// out. `log` is told of the records, unless it is null.
void visit_foreign_attributes(ntfs_volume& volume, byte_view record, uint64_t entry,
                              list_trust trust, diagnostics_log* log,
                              const attribute_visitor& visit);

}  // namespace ovrik
