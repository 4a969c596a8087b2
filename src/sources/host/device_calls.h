// The calls that reach a disk or volume of the running system, in plain types, so that what the
// block reader makes of their answers can be tried on every host.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace ovrik {

/// An open device; closes itself.
class open_device_file {
 public:
  open_device_file() = default;
  virtual ~open_device_file() = default;
  open_device_file(const open_device_file&) = delete;
  open_device_file& operator=(const open_device_file&) = delete;

  /// Asks the device the question `code`. The answer, of at most `most_bytes`, replaces `answer`.
  /// False: it does not answer.
  virtual bool ask(uint32_t code, size_t most_bytes, std::vector<uint8_t>& answer) = 0;

  /// Reads up to `size` bytes at `offset` and sets `size` to the count that came. Both are whole
  /// sectors. False: the device reports an error.
  virtual bool read(void* buffer, uint32_t& size, uint64_t offset) = 0;

  /// The size that the handle itself tells, in bytes; 0 if it tells none.
  virtual uint64_t size() = 0;
};

class device_calls {
 public:
  device_calls() = default;
  virtual ~device_calls() = default;
  device_calls(const device_calls&) = delete;
  device_calls& operator=(const device_calls&) = delete;

  /// Opens the device (UTF-8 path) for reading and nothing else, shared with everybody. Nothing:
  /// it does not open.
  virtual std::unique_ptr<open_device_file> open(const std::string& path) const = 0;
};

/// Those of the running system; on a host whose disks are files, ones that open nothing.
const device_calls& devices_of_host();

}  // namespace ovrik
