#include "hive/carving/chunk_stats.h"

#include <string>
#include <string_view>

#include "base/adler32.h"
#include "base/number_text.h"
#include "base/text.h"

namespace ovrik {

namespace {

constexpr std::string_view rule = "-----------------------------------------------\n";

std::string right_aligned(uint64_t number, size_t width) {
  std::string text;
  append_padded_left(text, decimal_text(number), width, ' ');
  return text;
}

/// Where a place in a cache comes to lie on the pages of its segments: number of the page and
/// place on it.
std::string page_place_text(uint32_t path_offset) {
  constexpr uint32_t segment_bytes = 16344;
  constexpr uint32_t segment_pages = 4;
  const uint32_t in_segment = path_offset % segment_bytes;
  uint32_t number = path_offset / segment_bytes * segment_pages;
  uint32_t place = in_segment % chunk_page_bytes;
  if (in_segment >= chunk_page_bytes) {
    number += in_segment / chunk_page_bytes;
    place += bin_page::data_at;
  }
  return "[" + hex_text(number, 2) + "|" + hex_text(place, 4) + "] ";
}

void write_run(std::ostream& out, size_t number, const page_run& run) {
  out << rule << "run: " << right_aligned(number, 2) << " : ";
  for (size_t i = 0; i < run.size(); ++i) {
    out << hex_text(run[i], 8) << '[' << decimal_text(i) << "] ";
  }
  out << '\n';
}

void write_page(std::ostream& out, size_t number, const chunk_page& page,
                const chunk_layout& layout) {
  constexpr size_t least_findings = 5;  // a page with fewer may be none of a cache
  const page_survey survey = survey_page(layout, page.view(), page.entry_at);
  const bool is_free = page.is_bin && page.view().u8_at(bin_page::first_cell_at + 3) == 0;
  const bool is_doubtful = survey.entry_count + survey.path_places.size() < least_findings;
  out << rule << right_aligned(number, 3) << " : Offset/size: 0x" << hex_text(page.offset, 8)
      << " : 0x" << hex_text(chunk_page_bytes, 4) << " : " << (is_free ? "free " : "alloc") << " : "
      << (is_doubtful ? "FP" : "ok") << " : cksum 0x" << hex_text(adler32(page.view()), 8)
      << "\nNum abs offsets: " << decimal_text(survey.path_offsets.size()) << " : ";
  for (const uint32_t offset : survey.path_offsets) {
    out << hex_text(offset, 6) << page_place_text(offset);
  }
  out << "\nNum rel offsets: " << decimal_text(survey.path_places.size()) << " : ";
  for (const uint32_t place : survey.path_places) out << hex_text(place, 4) << ' ';
  out << '\n';
}

}  // namespace

void write_chunk_stats(std::ostream& out, const scanned_source& source,
                       const carved_cache& carved) {
  for (size_t i = 0; i < carved.runs.size(); ++i) write_run(out, i + 1, carved.runs[i]);
  for (size_t i = 0; i < source.pages.size(); ++i) {
    write_page(out, i, source.pages[i], source.layout);
  }
}

}  // namespace ovrik
