#include "driver/binary_road.h"

#include <vector>

#include "shim/shim_parse.h"
#include "shim/shim_rows.h"
#include "sources/fileio.h"

namespace ovrik {

int32_t run_binary_road(cmdline_options& options, std::ostream& out,
                        std::ostream& standard_output) {
  std::vector<uint8_t> bytes;
  if (!uni::read_whole(bytes, options.source_path, max_binary_file)) return -1;
  const byte_view data(bytes);
  shim_cache_results results;
  if (!parse_shim_cache(results, data, 0, options.raw_mode)) {
    standard_output << "prob calling parse_shim_cache, aborting\n";
    return -1;
  }
  return output_shim_cache(out, results, options, data) ? 0 : -1;
}

}  // namespace ovrik
