// The streams that carry results: bytes of UTF-8 text, gathered in a large block so that a row
// costs no system call. Rows reach the file whole: what is written in one piece that ends with a
// line end is a row, and a block is handed on up to the end of its last row.
#pragma once

#include <algorithm>
#include <atomic>
#include <memory>
#include <ostream>
#include <streambuf>
#include <string>
#include <vector>

#include "output/unbroken.h"
#include "sources/host/fileio.h"

namespace uni {

/// A stream buffer with a put area of 0x3FFFF bytes and room for the one byte that `overflow`
/// brings; `write` of a derived class takes the bytes away. After a failed write it takes nothing
/// more.
template <typename character>
class streambuf_generic_output : public std::basic_streambuf<character> {
 public:
  using traits = typename std::basic_streambuf<character>::traits_type;
  using int_type = typename traits::int_type;

  streambuf_generic_output() : m_buffer(std::make_unique_for_overwrite<character[]>(buffer_size)) {
    m_row_ends.reserve(most_row_ends);  // no row takes memory
    reset_put_area();
  }

 protected:
  /// Takes up to `length` bytes and returns how many, or -1 on failure.
  virtual std::streamsize write(const character* bytes, std::streamsize length) = 0;

  /// Told that a write failed. `row_ends`: where rows end in the block that was to be written, as
  /// distances from its start.
  virtual void write_failed(const std::vector<size_t>& row_ends) = 0;

  /// The rows that are held, for a signal handler: they are whole, and do not change before the
  /// next `write`.
  const character* held_rows() const { return m_buffer.get(); }
  size_t held_row_bytes() const { return m_whole; }

  /// Writes the put area and `ch` behind it, unless `ch` is the end-of-file value. The put area is
  /// empty afterwards, also when the write failed: then the result is the end-of-file value.
  int_type overflow(int_type ch) override {
    const bool has_character = !traits::eq_int_type(ch, traits::eof());
    if (has_character) {
      *this->pptr() = traits::to_char_type(ch);
      this->pbump(1);
    }
    if (held() != 0 && this->pptr()[-1] == line_end) mark_row_end();
    if (!write_block(held())) return traits::eof();
    return traits::not_eof(ch);
  }

  /// Takes a text; one that is longer than the block goes on in pieces that end with a line.
  std::streamsize xsputn(const character* text, std::streamsize length) override {
    std::streamsize done = 0;
    while (done < length) {
      const std::streamsize piece = first_piece(text + done, length - done);
      if (!put_piece(text + done, piece)) return done;
      done += piece;
    }
    return done;
  }

  int sync() override {
    return traits::eq_int_type(overflow(traits::eof()), traits::eof()) ? -1 : 0;
  }

 private:
  using base = std::basic_streambuf<character>;

  static constexpr size_t buffer_size = 0x40000;
  static constexpr size_t most_row_ends = 0x4000;
  static constexpr character line_end = character('\n');

  size_t held() const { return static_cast<size_t>(this->pptr() - this->pbase()); }
  std::streamsize room() const { return this->epptr() - this->pptr(); }

  void reset_put_area() { this->setp(m_buffer.get(), m_buffer.get() + buffer_size - 1); }

  /// The length of what can stay together: all of it, or the lines that fit into the block.
  static std::streamsize first_piece(const character* text, std::streamsize length) {
    constexpr auto most = static_cast<std::streamsize>(buffer_size - 1);
    if (length <= most) return length;
    std::streamsize lines = most;
    while (lines > 0 && text[lines - 1] != line_end) --lines;
    return lines == 0 ? most : lines;
  }

  bool put_piece(const character* text, std::streamsize length) {
    if (length > room() && m_whole != 0 && !write_block(m_whole)) return false;
    if (length > room()) {  // behind a row that is not whole yet
      if (base::xsputn(text, length) != length) return false;
    } else {
      traits::copy(this->pptr(), text, static_cast<size_t>(length));
      this->pbump(static_cast<int>(length));
    }
    if (text[length - 1] == line_end) mark_row_end();
    return true;
  }

  /// Rows past the most that are counted are taken for one with the last of them.
  void mark_row_end() {
    if (m_row_ends.size() == most_row_ends) m_row_ends.pop_back();
    m_row_ends.push_back(held());
    std::atomic_signal_fence(std::memory_order_seq_cst);
    m_whole = held();
  }

  /// Writes `size` bytes of the put area and keeps what stands behind them. False: a write failed,
  /// now or earlier; the put area is empty then.
  bool write_block(size_t size) {
    const unbroken changing;
    const character* next = this->pbase();
    const character* const end = next + size;
    while (next != end && !m_failed) {
      const std::streamsize taken = write(next, end - next);
      if (taken < 0) {
        m_failed = true;
        write_failed(m_row_ends);
      } else {
        next += taken;
      }
    }
    const size_t rest = m_failed ? 0 : held() - size;
    traits::move(m_buffer.get(), end, rest);
    reset_put_area();
    this->pbump(static_cast<int>(rest));
    m_row_ends.clear();
    m_whole = 0;
    return !m_failed;
  }

  std::unique_ptr<character[]> m_buffer;
  std::vector<size_t> m_row_ends;   ///< distances from the start of the put area
  std::atomic<size_t> m_whole = 0;  ///< the last of them
  bool m_failed = false;
};

/// A stream buffer whose bytes go to the end of a file that it does not own. When a write fails, a
/// plain file that the run has opened by name is cut behind its last whole row.
class fileio_ostream : public streambuf_generic_output<char>, private ending_stream {
 public:
  explicit fileio_ostream(fileio& file);
  ~fileio_ostream() override;
  fileio_ostream(const fileio_ostream&) = delete;
  fileio_ostream& operator=(const fileio_ostream&) = delete;

 protected:
  std::streamsize write(const char* bytes, std::streamsize length) override;
  void write_failed(const std::vector<size_t>& row_ends) override;

 private:
  void write_last_rows() override;
  uint64_t length_of_own() const;

  fileio* m_file;
  uint64_t m_block_start = 0;  ///< of the last write, in the file
  uint64_t m_rows_end = 0;     ///< of the last whole row in the file
};

/// An output stream on a file. If the file was not open, the stream is in a failed state and
/// everything written is dropped.
class fileio_output : public std::ostream {
 public:
  explicit fileio_output(fileio& file);
  ~fileio_output() override;

 private:
  bool m_attached;
  fileio_ostream m_buffer;
};

/// What must exist before the stream on it does.
class owned_file {
 protected:
  explicit owned_file(const std::string& path) { m_file.open_write(path); }

  fileio m_file;
};

/// An output stream on a file of its own, which is made or truncated.
class file_output : owned_file, public fileio_output {
 public:
  explicit file_output(const std::string& path) : owned_file(path), fileio_output(m_file) {}

  /// False: the file could not be made.
  bool is_open() const { return m_file.is_open(); }
};

}  // namespace uni
