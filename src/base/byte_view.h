// The one way in which bytes of evidence are read: a bounds-checked window. No other code of the
// project does arithmetic on pointers into evidence.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ovrik {

/// Window on bytes that someone else owns. Offsets and lengths are in bytes from its start,
/// numbers are little-endian. A number that does not lie wholly inside is 0; `has` tells that
/// apart from a real zero. A window knows its place in the evidence that it was cut from, so that
/// what is found in it can be named by its offset.
class byte_view {
 public:
  byte_view() = default;

  /// The `size` bytes at `data`, which stand at the offset `place` of their source.
  byte_view(const uint8_t* data, size_t size, uint64_t place = 0)
      : m_data(data == nullptr ? &nothing : data),
        m_size(data == nullptr ? 0 : size),
        m_place(place) {}

  explicit byte_view(const std::vector<uint8_t>& bytes) : byte_view(bytes.data(), bytes.size()) {}

  const uint8_t* data() const { return m_data; }  ///< never null
  size_t size() const { return m_size; }
  bool empty() const { return m_size == 0; }

  const uint8_t* begin() const { return m_data; }
  const uint8_t* end() const { return m_data + m_size; }

  /// True if every byte is 0, as it is without any bytes.
  bool all_zero() const {
    return std::all_of(begin(), end(), [](uint8_t byte) { return byte == 0; });
  }

  /// Offset of the first byte in the source, in bytes: 0 unless whoever made the first window on
  /// the source said so. An empty window that lay outside has 0.
  uint64_t place() const { return m_place; }

  /// True if `length` bytes from `offset` on lie wholly inside.
  bool has(uint64_t offset, uint64_t length) const {
    return offset <= m_size && length <= m_size - offset;
  }

  uint8_t u8_at(uint64_t offset) const { return has(offset, 1) ? m_data[offset] : uint8_t{0}; }
  uint16_t u16_at(uint64_t offset) const { return static_cast<uint16_t>(number_at<2>(offset)); }
  uint32_t u32_at(uint64_t offset) const { return static_cast<uint32_t>(number_at<4>(offset)); }
  uint64_t u64_at(uint64_t offset) const { return number_at<8>(offset); }

  /// The bytes from `offset` to the end; empty if `offset` lies behind it.
  byte_view from(uint64_t offset) const {
    return offset <= m_size
               ? byte_view(m_data + offset, m_size - static_cast<size_t>(offset), m_place + offset)
               : byte_view();
  }

  /// At most `length` bytes from `offset` on: what runs past the end is cut off.
  byte_view clip(uint64_t offset, uint64_t length) const {
    const byte_view rest = from(offset);
    return length < rest.m_size ? byte_view(rest.m_data, static_cast<size_t>(length), rest.m_place)
                                : rest;
  }

  /// True if the characters of `text` stand at `offset`, as bytes.
  bool text_at(uint64_t offset, std::string_view text) const;

  /// Where the characters of `text`, one at least, stand first from `offset` on; nothing if they
  /// do not.
  std::optional<size_t> find(std::string_view text, uint64_t offset) const;

  /// The bytes as characters.
  std::string text() const;

  std::vector<uint8_t> copy() const { return std::vector<uint8_t>(begin(), end()); }

  /// Number of whole 16-bit units in front of the first one that is 0; of all if none is.
  size_t units_before_nul() const;

  /// Copies the first 16-bit units to `out`, a byte each, up to one that is 0x80 or more, and
  /// returns how many those are: `count` at most, which are whole units of the window.
  size_t copy_ascii_units(char* out, size_t count) const;

  /// Appends the bytes to `bytes`.
  void append_to(std::vector<uint8_t>& bytes) const;

  /// Copies the bytes to the start of `room`, as many as there is room for.
  void copy_to(std::span<uint8_t> room) const;

 private:
  template <size_t width>
  uint64_t number_at(uint64_t offset) const {
    if (!has(offset, width)) return 0;
    uint64_t number = 0;
    for (size_t i = 0; i < width; ++i) {
      number |= uint64_t{m_data[static_cast<size_t>(offset) + i]} << (8 * i);
    }
    return number;
  }

  static constexpr uint8_t nothing = 0;  // what an empty window points at

  const uint8_t* m_data = &nothing;
  size_t m_size = 0;
  uint64_t m_place = 0;
};

}  // namespace ovrik
