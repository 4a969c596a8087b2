// Sources of paths: the lines of the standard input.
#pragma once

#include <string>

namespace uni {

/// Gives the lines of the standard input, one a call.
class stdin_stream {
 public:
  stdin_stream();
  virtual ~stdin_stream() = default;
  stdin_stream(const stdin_stream&) = delete;
  stdin_stream& operator=(const stdin_stream&) = delete;

  /// Reads the next line without the CR and LF at its end. One of more than 4095 bytes arrives in
  /// pieces of that length; a byte order mark in front of the first one is left out. False, with
  /// `line` empty: there is no more.
  virtual bool next_line(std::string& line);

 private:
  bool m_at_start = true;
};

}  // namespace uni
