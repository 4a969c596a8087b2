// The streams that carry results: bytes of UTF-8 text, gathered in a large block so that a row
// costs no system call.
#pragma once

#include <memory>
#include <ostream>
#include <streambuf>
#include <string>

#include "sources/host/fileio.h"

namespace uni {

/// A stream buffer with a put area of 0x3FFFF bytes and room for the one byte that `overflow`
/// brings; `write` of a derived class takes the bytes away.
template <typename character>
class streambuf_generic_output : public std::basic_streambuf<character> {
 public:
  using traits = typename std::basic_streambuf<character>::traits_type;
  using int_type = typename traits::int_type;

  streambuf_generic_output() : m_buffer(std::make_unique_for_overwrite<character[]>(buffer_size)) {
    reset_put_area();
  }

 protected:
  /// Takes up to `length` bytes and returns how many, or -1 on failure.
  virtual std::streamsize write(const character* bytes, std::streamsize length) = 0;

  /// Writes the put area and `ch` behind it, unless `ch` is the end-of-file value. The put area is
  /// empty afterwards, also when the write failed: then the result is the end-of-file value.
  int_type overflow(int_type ch) override {
    const bool has_character = !traits::eq_int_type(ch, traits::eof());
    if (has_character) {
      *this->pptr() = traits::to_char_type(ch);
      this->pbump(1);
    }
    const character* next = this->pbase();
    bool failed = false;
    while (next != this->pptr() && !failed) {
      const std::streamsize taken = write(next, this->pptr() - next);
      failed = taken < 0;
      if (!failed) next += taken;
    }
    reset_put_area();
    if (failed) return traits::eof();
    return traits::not_eof(ch);
  }

  int sync() override {
    return traits::eq_int_type(overflow(traits::eof()), traits::eof()) ? -1 : 0;
  }

 private:
  static constexpr size_t buffer_size = 0x40000;

  void reset_put_area() { this->setp(m_buffer.get(), m_buffer.get() + buffer_size - 1); }

  std::unique_ptr<character[]> m_buffer;
};

/// A stream buffer whose bytes go to the end of a file that it does not own.
class fileio_ostream : public streambuf_generic_output<char> {
 public:
  explicit fileio_ostream(fileio& file) : m_file(&file) {}

 protected:
  std::streamsize write(const char* bytes, std::streamsize length) override;

 private:
  fileio* m_file;
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
