#include "output/streams.h"

namespace uni {

std::streamsize fileio_ostream::write(const char* bytes, std::streamsize length) {
  return m_file->append(bytes, static_cast<size_t>(length)) ? length : -1;
}

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
