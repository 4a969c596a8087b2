#include "output/streams.h"

#include <algorithm>
#include <string_view>

namespace uni {

fileio_ostream::fileio_ostream(fileio& file) : m_file(&file) { watch_for_end(this); }

fileio_ostream::~fileio_ostream() { forget_at_end(this); }

std::streamsize fileio_ostream::write(const char* bytes, std::streamsize length) {
  m_block_start = length_of_own();
  if (!m_file->append(bytes, static_cast<size_t>(length))) return -1;
  const std::string_view block(bytes, static_cast<size_t>(length));
  if (const size_t last = block.rfind('\n'); last != std::string_view::npos) {
    m_rows_end = m_block_start + last + 1;
  }
  return length;
}

// Asking for the length moves the place of writing, which a standard stream shares with others.
uint64_t fileio_ostream::length_of_own() const { return m_file->is_own() ? m_file->length() : 0; }

void fileio_ostream::write_failed(const std::vector<size_t>& row_ends) {
  const uint64_t arrived = length_of_own() - std::min(length_of_own(), m_block_start);
  const auto lost = std::upper_bound(row_ends.begin(), row_ends.end(), arrived);
  if (lost != row_ends.begin()) m_rows_end = m_block_start + *(lost - 1);
  m_file->cut(m_rows_end);
}

void fileio_ostream::write_last_rows() { m_file->append(held_rows(), held_row_bytes()); }

// The stream starts without a buffer, and so failed: the member does not exist yet when its base
// is made.
fileio_output::fileio_output(fileio& file)
    : std::ostream(nullptr), m_attached(file.is_open()), m_buffer(file) {
  if (m_attached) rdbuf(&m_buffer);
}

fileio_output::~fileio_output() {
  if (m_attached) flush();
}

}  // namespace uni
