#include "hive/hive_log_scan.h"

namespace ovrik {

scanned_log scan_hive_log(byte_view bytes) {
  scanned_log log;
  log.base = read_base_block(bytes);
  if (!log.base) return log;
  log.end = log_end::no_more;
  log.end_at = sealed_base_bytes;
  if (bytes.text_at(sealed_base_bytes, "HvLE")) scan_log_entries(log, bytes);
  if (bytes.text_at(sealed_base_bytes, "DIRT")) scan_dirty_vector(log, bytes);
  return log;
}

}  // namespace ovrik
