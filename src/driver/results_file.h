// Where the results go: the standard output or a file, and what is said when they do not arrive.
#pragma once

#include <memory>
#include <ostream>
#include <string>

#include "output/streams.h"
#include "sources/host/fileio.h"

namespace ovrik {

/// Tries whether the results file can be made, before anything else happens; a plain file that was
/// there is gone afterwards. False: it cannot, which has been said on standard error.
bool probe_results_file(const std::string& path);

/// The stream that result text goes to.
class results_stream {
 public:
  /// The standard output.
  results_stream();

  /// Goes to the file at `path`, which is made or truncated. False: it does not open.
  bool open(const std::string& path);

  std::ostream& out() { return *m_stream; }

  /// Writes what is still held and closes. False: something written did not arrive, which has been
  /// said on standard error.
  bool finish();

 private:
  uni::fileio m_file;
  std::unique_ptr<uni::fileio_output> m_stream;
  std::string m_name = "standard output";
};

}  // namespace ovrik
