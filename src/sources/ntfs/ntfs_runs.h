// Where the clusters of a non-resident NTFS attribute lie: its run list ("mapping pairs").
#pragma once

#include <cstdint>
#include <vector>

#include "base/byte_view.h"

namespace ovrik {

/// A stretch of clusters that lie side by side, or a hole.
struct cluster_extent {
  uint64_t lcn = 0;  ///< first cluster on the volume; 0 for a hole
  uint64_t vcn = 0;  ///< first cluster within the attribute
  uint64_t count = 0;
  bool sparse = false;
};

using cluster_extents = std::vector<cluster_extent>;

/// Appends the extents of a run list whose first cluster is `first_vcn`. A run without an offset is
/// a hole, and so is one with an offset of 0 unless it is the very first. Ends at a header of 0, at
/// an element that does not fit, or at one that leads further than any volume reaches.
void decode_run_list(cluster_extents& extents, byte_view runs, uint64_t first_vcn);

/// Puts the extents of all pieces of an attribute into the order of their VCNs. What a piece that
/// is missing held stays a gap, unless the VCNs overlap or lead past the `clusters` that the
/// attribute has: they are then numbered anew from 0, without gaps.
void place_pieces(cluster_extents& extents, uint64_t clusters);

/// The VCN behind the last extent: the clusters of an attribute, holes and gaps included.
uint64_t end_vcn(const cluster_extents& extents);

}  // namespace ovrik
