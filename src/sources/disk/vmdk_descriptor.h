// The descriptor of a VMDK: lines of text that say which disk it is and which one it builds on.
#pragma once

#include <string>

#include "base/byte_view.h"

namespace ovrik {

struct vmdk_descriptor {
  std::string encoding;
  std::string cid;               ///< identifies the state of this disk; lower-case hexadecimal
  std::string parent_cid;        ///< of the disk that it builds on
  std::string parent_file_hint;  ///< where that disk was last seen, quotes included

  /// True if the disk builds on no other (CID_NOPARENT).
  bool is_base() const { return parent_cid == "ffffffff"; }
  /// True if it names itself as the disk that it builds on. A base whose own CID is that of no disk
  /// does not.
  bool is_own_parent() const { return !is_base() && parent_cid == cid; }
};

/// Reads the lines up to the first zero byte. A key counts whatever its case, at the start of a
/// line; of two lines with one key the last one counts.
vmdk_descriptor parse_vmdk_descriptor(byte_view bytes);

}  // namespace ovrik
