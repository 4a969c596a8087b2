#include "hive/carving/chunk_scanner.h"

#include <algorithm>
#include <new>
#include <utility>

#include "shim/shim_detect.h"
#include "shim/shim_layouts.h"
#include "sources/host/file_source.h"

namespace ovrik {

namespace {

/// Where the scan stands: the source, and whether a layout is known.
class page_scan {
 public:
  page_scan(scanned_source& source, carve_listener& listener)
      : m_source(source), m_listener(listener) {}

  /// Looks at a page. False: the rest of the source cannot have anything.
  bool look_at(byte_view page) {
    return is_bin_page(page) ? look_at_bin(page) : look_at_tail(page);
  }

 private:
  bool look_at_tail(byte_view page) {
    if (!m_layout_known) return true;
    const auto entry_at = probe_page(m_source.layout, page);
    if (entry_at) m_source.tail_pages.emplace(page.place(), keep(page, *entry_at, false));
    return true;
  }

  bool look_at_bin(byte_view page) {
    if (!m_layout_known) recognise(page);
    if (!m_layout_known) {
      find_db_cell(page);
      return true;
    }
    // The entries of Windows 8 and later have no places of their own, so that no bin page of such
    // a cache could ever be told.
    if (m_source.layout.entry_places.empty()) return false;
    const auto entry_at = probe_page(m_source.layout, page);
    if (!entry_at) {
      find_db_cell(page);
      return true;
    }
    const uint32_t index = keep(page, *entry_at, true);
    m_source.bin_pages.emplace(page.place(), index);
    const uint32_t first = page.u32_at(bin_page::data_at);
    if (first == layout_facts(m_source.layout.layout).carving_magic) {
      m_source.start_pages.emplace(page.place(), index);
    }
    return true;
  }

  /// The first cache in the source decides what is looked for in the rest of it.
  void recognise(byte_view page) {
    detected_shim found;
    if (!detect_shim_layout(page.clip(bin_page::data_at, bin_page::data_bytes), found)) return;
    const auto layout = chunk_layout_of(found.layout);
    if (!layout) return;
    m_source.layout = *layout;
    m_layout_known = true;
    m_listener.layout_recognised(page.place(), found.layout);
  }

  /// Notes the first cell on a bin page that lists the segments of a large value. The cells in
  /// front of it are passed, be they in use or free.
  void find_db_cell(byte_view page) {
    if (!m_source.is_hive) return;
    for (uint64_t at = bin_page::first_cell_at; at < chunk_page_bytes;) {
      const byte_view bytes = page.from(at);
      const uint64_t size = cell_size(bytes);
      if (size < 1 || at + size >= chunk_page_bytes) return;
      if (size == db_cell_fields::bytes && bytes.text_at(cell::content_at, "db")) {
        m_source.db_cells.push_back({static_cast<uint32_t>(page.place() + at),
                                     bytes.u32_at(db_cell_fields::segment_list_at),
                                     bytes.u16_at(db_cell_fields::segment_count_at)});
        return;
      }
      at += size;
    }
  }

  /// Copies the page and returns its index.
  uint32_t keep(byte_view page, uint32_t entry_at, bool is_bin) {
    chunk_page& kept = m_source.pages.emplace_back();
    kept.offset = page.place();
    kept.entry_at = entry_at;
    kept.is_bin = is_bin;
    page.copy_to(kept.bytes);
    return static_cast<uint32_t>(m_source.pages.size() - 1);
  }

  scanned_source& m_source;
  carve_listener& m_listener;
  bool m_layout_known = false;
};

/// Scans from `offset` on, which afterwards tells where the scan came to.
void scan_blocks(scanned_source& source, carve_listener& listener, uint64_t& offset) {
  constexpr size_t block_bytes = 0x40000;  // small enough to stay in the processor's cache
  std::vector<uint8_t> block(block_bytes);
  page_scan scan(source, listener);
  while (offset < source.file_size) {
    size_t size = block_bytes;
    source.file->read(block.data(), size, offset, source.faults);
    // What is missing of the last page reads as zeros.
    const size_t whole = (size + chunk_page_bytes - 1) / chunk_page_bytes * chunk_page_bytes;
    std::fill(block.begin() + static_cast<std::ptrdiff_t>(size),
              block.begin() + static_cast<std::ptrdiff_t>(whole), uint8_t{0});
    size = whole;
    const byte_view bytes(block.data(), size, offset);
    for (size_t at = 0; at + chunk_page_bytes <= size; at += chunk_page_bytes) {
      if (!scan.look_at(bytes.clip(at, chunk_page_bytes))) {
        offset = source.file_size;
        return;
      }
      offset += chunk_page_bytes;
    }
    listener.scanned(std::min(offset, source.file_size), source.file_size);
  }
}

}  // namespace

bool open_scanned_source(scanned_source& source, const std::string& path) {
  auto file = open_file_source(path);
  if (file == nullptr) return false;
  source.file.emplace(std::move(file), path);
  source.file_size = source.file->size();
  if (source.file_size < chunk_page_bytes) return false;
  std::vector<uint8_t> start;
  source.is_hive =
      source.file->read_vector(start, 4, 0, source.faults) && byte_view(start).text_at(0, "regf");
  return true;
}

bool scan_pages(scanned_source& source, carve_listener& listener) {
  uint64_t offset = 0;
  try {
    scan_blocks(source, listener, offset);
  } catch (const std::bad_alloc&) {
    // What was found counts.
  }
  if (offset < source.file_size) listener.scan_stopped(offset);
  return !source.bin_pages.empty() && !source.tail_pages.empty();
}

bool are_bins_in_place(const scanned_source& source) {
  if (!source.is_hive) return true;
  return std::all_of(source.bin_pages.begin(), source.bin_pages.end(), [&](const auto& found) {
    const byte_view page = source.pages[found.second].view();
    const int64_t bin_offset = static_cast<int32_t>(page.u32_at(bin_page::bin_offset_at));
    return bin_offset + int64_t{base_block_bytes} == static_cast<int64_t>(found.first);
  });
}

}  // namespace ovrik
