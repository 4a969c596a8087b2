// The caches whose entries have a signature and a length of their own: Windows 8 and later.
#include <algorithm>

#include "shim/shim_layouts.h"
#include "shim/shim_walk.h"

namespace ovrik {

namespace {

/// Where the path of an entry lies.
struct path_place {
  uint32_t length_at;
  uint32_t path_at;
};

constexpr path_place first_form{signed_entry::path_length_at, signed_entry::path_at};
constexpr path_place second_form{signed_entry::second_form_path_length_at,
                                 signed_entry::second_form_path_at};

class signed_walk {
 public:
  explicit signed_walk(shim_walk& walk)
      : m_walk(walk),
        m_layout(signed_layout_of(walk.found.layout)),
        m_signature(walk.found.signature != 0 ? walk.found.signature
                                              : walk.data.u32_at(walk.found.header_bytes)) {}

  /// Reads the entry at the walk's place, or the next one that can be found. False: the walk ends.
  bool step() {
    shim_cache_entry entry = m_walk.next_entry();
    uint64_t whole_length = whole_length_of(m_walk.rest());
    path_place place = first_form;
    if (!passes(m_walk.rest())) {
      if (!move_to_signature()) return false;
      if (!passes(m_walk.rest())) {
        if (m_layout.layout != shim_layout::win8 || !passes_second_form(m_walk.rest())) {
          return false;
        }
        place = second_form;
      }
      // Layouts 13 and 14 go on by the length that stood at the bad place.
      if (!is_win10()) whole_length = whole_length_of(m_walk.rest());
    }
    const byte_view bytes = m_walk.rest();
    if (is_win10() && whole_length > bytes.size()) return false;
    if (!read(bytes, place, entry)) return false;
    if (m_walk.raw_mode) entry.raw_bytes = bytes.clip(0, whole_length).copy();
    m_walk.store(std::move(entry));
    m_walk.offset += whole_length;
    return true;
  }

 private:
  bool is_win10() const {
    return m_layout.layout == shim_layout::win10 || m_layout.layout == shim_layout::win10_later;
  }

  bool is_bare() const {
    return m_layout.layout == shim_layout::bare ||
           m_layout.layout == shim_layout::bare_with_package;
  }

  static uint64_t whole_length_of(byte_view bytes) {
    return uint64_t{bytes.u32_at(signed_entry::data_size_at)} + signed_entry::bytes_before_data;
  }

  bool passes(byte_view bytes) const {
    if (is_bare()) {
      shim_layout layout = shim_layout::none;
      return bytes.u32_at(0) == m_signature && is_bare_entry(bytes, layout) &&
             layout == m_layout.layout;
    }
    return is_signed_entry(bytes, m_signature, first_form.length_at, signed_entry::least_bytes);
  }

  bool passes_second_form(byte_view bytes) const {
    return is_signed_entry(bytes, m_signature, second_form.length_at,
                           signed_entry::second_form_least_bytes);
  }

  /// Moves the walk to the next place, its own included, that holds the four signature bytes.
  bool move_to_signature() {
    const byte_view bytes = m_walk.rest();
    const uint8_t signature[] = {
        static_cast<uint8_t>(m_signature), static_cast<uint8_t>(m_signature >> 8),
        static_cast<uint8_t>(m_signature >> 16), static_cast<uint8_t>(m_signature >> 24)};
    const uint8_t* end = bytes.data() + bytes.size();
    const uint8_t* hit = std::search(bytes.data(), end, std::begin(signature), std::end(signature));
    if (hit == end) return false;
    m_walk.offset += static_cast<uint64_t>(hit - bytes.data());
    return true;
  }

  bool read(byte_view bytes, const path_place& place, shim_cache_entry& entry) {
    entry.valid = true;
    entry.layout = m_layout.layout;
    entry.signature = bytes.u32_at(0);
    entry.entry_tag = bytes.u32_at(signed_entry::tag_at);
    const uint32_t path_length = bytes.u16_at(place.length_at);
    if (whole_length_of(bytes) <= bytes.size()) {
      // The second form lacks the u16 that stands behind the path in the first.
      const uint32_t behind_path = place.path_at + path_length;
      read_fields(bytes.from(behind_path - (place.path_at - first_form.path_at)), entry);
    }
    return m_walk.read_path(entry, bytes.clip(place.path_at, path_length));
  }

  /// Reads what the layout has behind the path; `bytes` begins where the path of the first form
  /// ends.
  void read_fields(byte_view bytes, shim_cache_entry& entry) const {
    if (m_layout.flags1_at != absent) entry.flags1 = bytes.u32_at(m_layout.flags1_at);
    if (m_layout.flags2_at != absent) entry.flags2 = bytes.u32_at(m_layout.flags2_at);
    if (m_layout.modified_at != absent) entry.modified_time = bytes.u64_at(m_layout.modified_at);
  }

  shim_walk& m_walk;
  const signed_layout& m_layout;
  uint32_t m_signature;
};

}  // namespace

void walk_signed_cache(shim_walk& walk) {
  signed_walk steps(walk);
  while (!walk.rest().empty() && steps.step()) {
  }
}

}  // namespace ovrik
