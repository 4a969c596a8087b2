#include "sources/ntfs/ntfs_file.h"

#include <algorithm>
#include <cstring>

#include "sources/ntfs/lznt1.h"
#include "sources/ntfs/ntfs_attributes.h"

namespace ovrik {

namespace {

constexpr uint64_t clusters_per_unit = 16;     // of compression
constexpr uint64_t largest_file = 0x7FFFFFFF;  // bytes; no reader takes more
constexpr uint16_t compressed_flag = 0x0001;   // Flags of an ATTRIBUTE_RECORD_HEADER

/// The first two bytes of a unit that begins with an uncompressed LZNT1 chunk of full length.
constexpr uint16_t raw_chunk_header = 0x3FFF;

/// The unnamed $DATA of a file, its pieces joined.
struct data_stream {
  bool found = false;
  bool non_resident = false;
  uint16_t flags = 0;
  uint8_t compression_unit = 0;
  uint64_t allocated_size = 0;   ///< this and the other sizes in bytes
  uint64_t stated_size = 0;      ///< the greater of the initialized and the real one
  uint64_t compressed_size = 0;  ///< what is stored of a compressed file
  uint64_t first_vcn = 0;        ///< of the piece that the sizes come from
  cluster_extents extents;
  std::vector<uint8_t> resident_bytes;

  bool is_compressed() const {
    return flags == compressed_flag && compression_unit != 0 && compressed_size != 0;
  }
};

/// Adds a piece of the stream. The sizes come from the piece that lies first in the file.
void add_piece(data_stream& stream, const ntfs_attribute& attribute, size_t most_extents) {
  if (attribute.type() != ntfs_type::data || !attribute.name().empty()) return;
  if (!attribute.non_resident()) {
    if (!stream.found) stream.resident_bytes = attribute.content().copy();
    stream.found = true;
    return;
  }
  if (!stream.non_resident || attribute.first_vcn() < stream.first_vcn) {
    stream.flags = attribute.flags();
    stream.compression_unit = attribute.compression_unit();
    stream.allocated_size = attribute.allocated_size();
    stream.stated_size = std::max(attribute.initialized_size(), attribute.real_size());
    stream.compressed_size = attribute.compressed_size();
    stream.first_vcn = attribute.first_vcn();
  }
  stream.found = true;
  stream.non_resident = true;
  decode_run_list(stream.extents, attribute.runs(), attribute.first_vcn(), most_extents);
}

unsigned long long printable(uint64_t value) { return value; }

/// Finds the stream in the file's record and in those that its attribute list names. False: there
/// is none, or the record cannot be read.
bool find_data(ntfs_volume& volume, uint64_t inode, data_stream& stream, diagnostics_log& log) {
  ntfs_record_bytes record;
  if (!volume.read_mft_record(inode, record)) {
    if (byte_view(record).text_at(0, "BAAD")) {
      diag_printf(log, "->err: fixup_mft type: BAAD");
      diag_printf(log, "->err: recd bad %llx", printable(inode));
    } else {
      diag_printf(log, "->err: mftfixup %llx", printable(inode));
    }
    return false;
  }
  for (const ntfs_attribute& attribute : attributes_of(byte_view(record))) {
    add_piece(stream, attribute, volume.most_extents());
  }
  visit_foreign_attributes(volume, byte_view(record), inode,
                           {list_trust::same_sequence, {ntfs_type::data}}, &log,
                           [&](byte_view /*holder*/, const ntfs_attribute& attribute) {
                             add_piece(stream, attribute, volume.most_extents());
                           });
  place_pieces(stream.extents, stream.allocated_size / volume.bytes_per_cluster());
  return stream.found;
}

/// The bytes that a stream can have at most: as many as it states and its extents hold.
uint64_t total_size(const ntfs_volume& volume, const data_stream& stream) {
  const uint64_t clusters = end_vcn(stream.extents);
  const uint64_t held = clusters > largest_file / volume.bytes_per_cluster()
                            ? stream.stated_size
                            : clusters * volume.bytes_per_cluster();
  return std::min(stream.stated_size, held);
}

/// Reads the clusters one behind the other until `bytes` is full or one cannot be read, and cuts
/// `bytes` there. Holes take no room; gaps between the pieces of the file stay zeros.
void read_plain(ntfs_volume& volume, const data_stream& stream, uni::memory_block& bytes) {
  const uint32_t cluster_bytes = volume.bytes_per_cluster();
  const size_t whole = bytes.size() / cluster_bytes * cluster_bytes;  // in whole clusters
  size_t done = 0;
  uint64_t vcn = 0;
  for (const cluster_extent& extent : stream.extents) {
    // What a missing piece held is zeros, so that all behind it stays in its place.
    const uint64_t gap_clusters =
        std::min<uint64_t>(extent.vcn - vcn, (whole - done) / cluster_bytes);
    done += static_cast<size_t>(gap_clusters) * cluster_bytes;
    vcn = extent.vcn + extent.clusters;
    if (extent.sparse) continue;
    const uint64_t clusters = std::min<uint64_t>(extent.clusters, (whole - done) / cluster_bytes);
    const uint64_t wanted = clusters * cluster_bytes;
    const uint64_t read = volume.read_clusters(extent.lcn, bytes.data() + done, wanted);
    done += static_cast<size_t>(read);
    if (read != wanted) break;
    if (clusters == extent.clusters) continue;
    // The file ends within this extent, and mostly within a cluster.
    std::vector<uint8_t> last(cluster_bytes);
    if (bytes.size() != whole &&
        volume.read_clusters(extent.lcn + clusters, last.data(), cluster_bytes) == cluster_bytes) {
      std::memcpy(bytes.data() + done, last.data(), bytes.size() - done);
      done = bytes.size();
    }
    break;
  }
  bytes.cut(done);
}

/// One compression unit as it lies on the volume.
struct stored_unit {
  std::vector<uint8_t> bytes;
  bool has_hole = false;
  bool has_data = false;
  bool damaged = false;  ///< a cluster cannot be read, or the extents end
};

stored_unit read_unit(ntfs_volume& volume, const cluster_extents& extents, uint64_t first_vcn) {
  const uint32_t cluster_bytes = volume.bytes_per_cluster();
  stored_unit unit;
  for (uint64_t vcn = first_vcn; vcn < first_vcn + clusters_per_unit && !unit.damaged; ++vcn) {
    const auto extent = std::upper_bound(
        extents.begin(), extents.end(), vcn,
        [](uint64_t place, const cluster_extent& e) { return place < e.vcn + e.clusters; });
    if (extent == extents.end()) break;
    const size_t begin = unit.bytes.size();
    unit.bytes.resize(begin + cluster_bytes);
    if (extent->sparse || vcn < extent->vcn) {
      unit.has_hole = true;
      continue;
    }
    const uint64_t lcn = extent->lcn + (vcn - extent->vcn);
    unit.damaged =
        volume.read_clusters(lcn, unit.bytes.data() + begin, cluster_bytes) != cluster_bytes;
    unit.has_data = unit.has_data || !unit.damaged;
    if (unit.damaged) unit.bytes.resize(begin);
  }
  return unit;
}

/// Decompresses unit after unit until `bytes` is full or a unit has no usable data.
void read_compressed(ntfs_volume& volume, const data_stream& stream, uni::memory_block& bytes) {
  const size_t unit_bytes = clusters_per_unit * volume.bytes_per_cluster();
  size_t filled = 0;
  std::vector<uint8_t> plain;
  // A unit stands for as many bytes of the file as its clusters have, however many came out of it.
  for (size_t done = 0; done < bytes.size(); done += unit_bytes) {
    const uint64_t vcn = done / volume.bytes_per_cluster();
    const stored_unit unit = read_unit(volume, stream.extents, vcn);
    const size_t wanted = std::min(unit_bytes, bytes.size() - done);
    const byte_view stored(unit.bytes);
    plain.clear();
    if (stored.empty()) break;
    if (!unit.has_data && unit.has_hole) {
      plain.resize(wanted);
    } else if (!unit.has_hole && stored.u16_at(0) != raw_chunk_header) {
      plain = stored.clip(0, wanted).copy();
    } else if (!decompress_unit(plain, stored, wanted)) {
      break;
    }
    std::memcpy(bytes.data() + filled, plain.data(), plain.size());
    filled += plain.size();
  }
  bytes.cut(filled);
}

/// How many bytes to make room for: no more than any reader takes, nor than what is stored can
/// hold. A compressed file is at most as many times as large as what is stored of it as a unit has
/// clusters, for every unit with data has one of its own. The same limit is given to a disk that
/// stores no zeros.
size_t room_for(const ntfs_volume& volume, const data_stream& stream) {
  uint64_t room = std::min(total_size(volume, stream), largest_file);
  if (!stream.is_compressed()) room = std::min(room, volume.disk_size());
  if (room / clusters_per_unit > volume.stored_size()) {
    room = volume.stored_size() * clusters_per_unit;
  }
  return static_cast<size_t>(room);
}

}  // namespace

bool read_file_by_inode(ntfs_volume& volume, uint64_t inode, uni::memory_block& bytes,
                        diagnostics_log& log) {
  data_stream stream;
  if (!find_data(volume, inode, stream, log)) return false;
  if (stream.extents.empty() && stream.resident_bytes.empty()) {
    diag_printf(log, "->err: no data");
    return false;
  }
  const uint64_t stated =
      stream.non_resident ? stream.stated_size : uint64_t{stream.resident_bytes.size()};
  diag_printf(log, "->info: data size 0x%llx", printable(stated));
  const size_t room = stream.non_resident ? room_for(volume, stream) : stream.resident_bytes.size();
  if (room == 0 || !bytes.allocate(room)) return false;
  if (!stream.non_resident) {
    std::memcpy(bytes.data(), stream.resident_bytes.data(), room);
  } else if (stream.is_compressed()) {
    read_compressed(volume, stream, bytes);
  } else {
    read_plain(volume, stream, bytes);
  }
  return bytes.size() != 0;
}

}  // namespace ovrik
