// The attributes of a file that stand in other records than its own.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "base/diagnostics_log.h"
#include "sources/ntfs/mft_reader.h"
#include "sources/ntfs/ntfs_record.h"

namespace ovrik {

/// How strictly the record that a list names must be the one that the list means.
enum class list_trust {
  same_sequence,  ///< its sequence number must be the one in the list
  any_record,     ///< a record that has been used for another file since counts as well
};

/// Which of the attributes that a list names are wanted.
struct list_request {
  list_trust trust = list_trust::same_sequence;
  std::vector<uint32_t> types;  ///< type codes; a record is read only for one of these
};

/// Is given each attribute and the record that holds it. Both are valid during the call only.
using attribute_visitor = std::function<void(byte_view holder, const ntfs_attribute& attribute)>;

/// Visits the attributes that the $ATTRIBUTE_LIST of `record` names in other records and that are
/// wanted, in the order of the list. `entry` is the number of `record` in the MFT. An attribute
/// that cannot be read or is not where the list says is left out. `log` is told of the records,
/// unless it is null.
void visit_foreign_attributes(mft_reader& volume, byte_view record, uint64_t entry,
                              const list_request& wanted, diagnostics_log* log,
                              const attribute_visitor& visit);

}  // namespace ovrik
