// Where the clusters of a non-resident NTFS attribute lie: its run list ("mapping pairs").
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/byte_view.h"

namespace ovrik {

/// A stretch of clusters that lie side by side, or a hole.
struct cluster_extent {
  uint64_t lcn = 0;       ///< first cluster, counted from the volume's start; 0 for a hole
  uint64_t vcn = 0;       ///< first cluster, counted from the attribute's start
  uint64_t clusters = 0;  ///< how many
  bool sparse = false;    ///< a hole
};

using cluster_extents = std::vector<cluster_extent>;

/// Appends the extents of a run list (the "mapping pairs" of an ATTRIBUTE_RECORD_HEADER) whose
/// first cluster is `first_vcn`. A run without an offset is a hole, and so is one with an offset of
/// 0 unless it is the very first; a run of no clusters is left out. The list ends at a header byte
/// of 0, at a run that does not fit into `runs`, at one that leads further than any volume reaches,
/// and where `extents` has `most` of them.
void decode_run_list(cluster_extents& extents, byte_view runs, uint64_t first_vcn, size_t most);

/// Sorts the extents of all pieces of an attribute by VCN. A piece that is missing leaves a gap. If
/// extents overlap or reach past the `clusters` that the attribute has, their VCNs cannot be
/// trusted: they are then numbered anew from 0, without gaps.
void place_pieces(cluster_extents& extents, uint64_t clusters);

/// The VCN behind the last extent: the clusters of an attribute, holes and gaps included.
uint64_t end_vcn(const cluster_extents& extents);

}  // namespace ovrik
