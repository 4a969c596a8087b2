// Composes transaction logs of both kinds, and the start of a hive that they belong to.

#pragma once

#include <string>
#include <vector>

#include "support/bytes.h"

namespace test_support {

struct base_block_form {
  uint32_t sequence1 = 10;
  uint32_t sequence2 = 10;
  uint32_t bins_bytes = 0x1000;
  uint64_t time_stamp = 0x01D8000000000000;
  std::u16string name = u"\\SystemRoot\\Config\\SYSTEM";
  uint8_t rm_id = 7;  ///< every byte of the GUID
};

/// The 512 bytes of a base block that is sound.
bytes composed_base_block(const base_block_form& form);

/// Sectors of 512 bytes that all hold `fill`; places count from the first bin.
struct log_page_form {
  uint32_t offset = 0;
  uint32_t size = 512;
  char fill = 'x';
};

/// A log entry ("HvLE") with its hashes, padded to whole sectors.
bytes composed_log_entry(uint32_t sequence, const std::vector<log_page_form>& pages,
                         uint32_t bins_bytes = 0x1000);

/// Makes the hashes of the entry at `at` right again, as far as its size field lets them.
void seal_log_entry(bytes& log, size_t at);

/// The dirty vector ("DIRT") and the pages, in the order of their offsets.
bytes composed_dirty_vector(const std::vector<log_page_form>& pages, uint32_t bins_bytes = 0x1000);

/// Base block and bins, whose sectors begin with a dot. The first bin has the time stamp as well.
bytes composed_dirty_hive(const base_block_form& form);

}  // namespace test_support
