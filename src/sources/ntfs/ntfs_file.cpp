#include "sources/ntfs/ntfs_file.h"

#include <algorithm>
#include <utility>

#include "sources/ntfs/ntfs_attributes.h"
#include "sources/ntfs/ntfs_data.h"

namespace ovrik {

namespace {

constexpr uint64_t largest_file = 0x7FFFFFFF;  // bytes; no reader takes more
constexpr uint16_t compressed_flag = 0x0001;   // Flags of an ATTRIBUTE_RECORD_HEADER

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

/// The size that a file is given: no more than any reader takes, nor than what is stored can hold.
/// A compressed file is at most as many times as large as what is stored of it as a unit has
/// clusters, for every unit with data has one of its own. The same limit is given to a disk that
/// stores no zeros.
uint64_t size_of(const ntfs_volume& volume, const data_stream& stream) {
  uint64_t size = std::min(total_size(volume, stream), largest_file);
  if (!stream.is_compressed()) size = std::min(size, volume.disk_size());
  if (size / packed_data::clusters_per_unit > volume.stored_size()) {
    size = volume.stored_size() * packed_data::clusters_per_unit;
  }
  return size;
}

/// Data of a record itself. Nothing: there is none, or no memory for it.
std::unique_ptr<byte_source> held_copy(byte_view content) {
  uni::memory_block bytes;
  if (content.empty() || !bytes.allocate(content.size())) return nullptr;
  content.copy_to({bytes.data(), bytes.size()});
  return std::make_unique<held_data>(std::move(bytes));
}

/// Compressed data. Units that are larger than the system makes them cost too much to be
/// decompressed more than once: then all of the data is, at once. Nothing: there is no memory.
std::unique_ptr<byte_source> packed(std::shared_ptr<ntfs_volume> volume, cluster_extents extents,
                                    uint64_t size) {
  constexpr uint64_t largest_lazy_unit = 0x40000;
  auto data = std::make_unique<packed_data>(std::move(volume), std::move(extents), size);
  if (data->unit_bytes() <= largest_lazy_unit) return data;
  uni::memory_block bytes;
  if (!read_whole_data(*data, bytes)) return nullptr;
  return std::make_unique<held_data>(std::move(bytes));
}

}  // namespace

std::unique_ptr<byte_source> open_file_data(std::shared_ptr<ntfs_volume> volume, uint64_t inode,
                                            diagnostics_log& log) {
  data_stream stream;
  if (!find_data(*volume, inode, stream, log)) return nullptr;
  if (stream.extents.empty() && stream.resident_bytes.empty()) {
    diag_printf(log, "->err: no data");
    return nullptr;
  }
  const uint64_t stated =
      stream.non_resident ? stream.stated_size : uint64_t{stream.resident_bytes.size()};
  diag_printf(log, "->info: data size 0x%llx", printable(stated));
  if (!stream.non_resident) return held_copy(byte_view(stream.resident_bytes));
  const uint64_t size = size_of(*volume, stream);
  if (size == 0) return nullptr;
  if (!stream.is_compressed()) {
    return std::make_unique<plain_data>(std::move(volume), stream.extents, size);
  }
  return packed(std::move(volume), std::move(stream.extents), size);
}

}  // namespace ovrik
