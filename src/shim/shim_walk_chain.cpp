// The caches whose entries have a signature and a length of their own: Windows 8 and later.
#include "shim/shim_walk.h"

namespace ovrik {

namespace {

/// Where the path of an entry lies.
struct path_place {
  uint32_t length_at;
  uint32_t path_at;
};

constexpr path_place first_form{chain_entry::path_length_at, chain_entry::path_at};
constexpr path_place second_form{chain_entry::second_form_path_length_at,
                                 chain_entry::second_form_path_at};

uint64_t whole_length_of(byte_view bytes) {
  return uint64_t{bytes.u32_at(chain_entry::data_size_at)} + chain_entry::bytes_before_data;
}

/// One step from entry to entry. All entries have the signature of the first one.
class chain_step {
 public:
  explicit chain_step(shim_walk& walk)
      : m_walk(walk),
        m_layout(walk.layout()),
        m_signature(walk.data().u32_at(m_layout.header_bytes + chain_entry::signature_at)) {}

  /// Reads the entry at the walk's place, or the next one that can be found. False: the walk ends.
  bool take(shim_cache_entry& entry) {
    uint64_t whole_length = whole_length_of(m_walk.rest());
    path_place place = first_form;
    if (!passes(m_walk.rest())) {
      if (!move_to_signature()) return false;
      if (!passes(m_walk.rest())) {
        if (!passes_second_form(m_walk.rest())) return false;
        place = second_form;
      }
      if (!m_layout.length_from_bad_place) whole_length = whole_length_of(m_walk.rest());
    }
    const byte_view bytes = m_walk.rest();
    if (m_layout.must_fit && whole_length > bytes.size()) return false;
    if (!read(bytes, place, entry)) return false;
    m_walk.move_by(whole_length);
    return true;
  }

 private:
  bool passes(byte_view bytes) const { return is_chain_entry(bytes, m_layout, m_signature); }

  bool passes_second_form(byte_view bytes) const {
    return m_layout.second_form && is_second_form_entry(bytes, m_signature);
  }

  /// Moves the walk to the next place, its own included, that holds the four signature bytes.
  bool move_to_signature() {
    const auto hit = m_walk.rest().find(m_walk.signature(), 0);
    if (!hit) return false;
    m_walk.move_by(*hit);
    return true;
  }

  bool read(byte_view bytes, const path_place& place, shim_cache_entry& entry) {
    entry.signature = bytes.u32_at(chain_entry::signature_at);
    entry.entry_tag = bytes.u32_at(chain_entry::tag_at);
    const uint32_t path_length = bytes.u16_at(place.length_at);
    if (whole_length_of(bytes) <= bytes.size()) {
      // The second form lacks the u16 that stands behind the path in the first.
      const uint32_t behind_path = place.path_at + path_length;
      read_fields(bytes.from(behind_path - (place.path_at - first_form.path_at)), entry);
    }
    return m_walk.take_path(entry, bytes.clip(place.path_at, path_length));
  }

  /// Reads what the layout has behind the path; `bytes` begins where the path of the first form
  /// ends.
  void read_fields(byte_view bytes, shim_cache_entry& entry) const {
    if (m_layout.flags1_at != absent) entry.flags1 = bytes.u32_at(m_layout.flags1_at);
    if (m_layout.flags2_at != absent) entry.flags2 = bytes.u32_at(m_layout.flags2_at);
    if (m_layout.modified_at != absent) entry.modified_time = bytes.u64_at(m_layout.modified_at);
  }

  shim_walk& m_walk;
  const shim_layout_row& m_layout;
  uint32_t m_signature;
};

}  // namespace

step_outcome step_along_chain(shim_walk& walk, shim_cache_entry& entry) {
  return chain_step(walk).take(entry) ? step_outcome::entry : step_outcome::ended;
}

}  // namespace ovrik
