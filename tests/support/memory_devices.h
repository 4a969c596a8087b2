// Devices of a Windows in memory: what they answer, and what they hold.

#pragma once

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "sources/host/device_calls.h"
#include "support/bytes.h"
#include "support/memory_disk.h"

namespace test_support {

// The codes of the questions, and the answers as Windows lays them out.
constexpr uint32_t ask_geometry_ex = 0x700A0;
constexpr uint32_t ask_geometry = 0x70000;
constexpr uint32_t ask_partition = 0x74004;
constexpr uint32_t ask_partition_ex = 0x70048;

/// DISK_GEOMETRY of a fixed disk: 2 tracks of 4 sectors in each cylinder.
inline bytes geometry(uint64_t cylinders, uint32_t bytes_per_sector = 512) {
  bytes answer;
  append_u64(answer, cylinders);
  for (const uint32_t number : {12U, 2U, 4U, bytes_per_sector}) append_u32(answer, number);
  return answer;
}

inline bytes geometry_ex(uint64_t size, uint32_t bytes_per_sector = 512) {
  bytes answer = geometry(1, bytes_per_sector);
  append_u64(answer, size);
  return answer;
}

/// PARTITION_INFORMATION: where it starts and its length.
inline bytes partition(uint64_t length) {
  bytes answer(32);
  put_u64(answer, 0, 0x100000);
  put_u64(answer, 8, length);
  return answer;
}

/// PARTITION_INFORMATION_EX of a GPT disk.
inline bytes partition_ex(uint64_t length) {
  bytes answer(144);
  put_u64(answer, 0, 1);
  put_u64(answer, 8, 0x100000);
  put_u64(answer, 16, length);
  return answer;
}

struct memory_device {
  bytes content = {};
  std::map<uint32_t, bytes> answers = {};
  uint64_t handle_size = 0;  ///< what the handle itself tells
  uint32_t sector = 512;     ///< of reads, which must be whole sectors
  bool reads_fail = false;
};

/// Devices by path, and a record of what was tried.
class memory_devices : public ovrik::device_calls {
 public:
  std::map<std::string, memory_device> devices;
  mutable std::vector<std::string> opened;

  std::unique_ptr<ovrik::open_device_file> open(const std::string& path) const override {
    opened.push_back(path);
    const auto found = devices.find(path);
    if (found == devices.end()) return nullptr;
    return std::make_unique<open_file>(found->second);
  }

 private:
  struct open_file : ovrik::open_device_file {
    explicit open_file(const memory_device& told) : device(told) {}

    bool ask(uint32_t code, size_t most_bytes, std::vector<uint8_t>& answer) override {
      const auto found = device.answers.find(code);
      if (found == device.answers.end() || found->second.size() > most_bytes) return false;
      answer = found->second;
      return true;
    }

    bool read(void* buffer, uint32_t& size, uint64_t offset) override {
      EXPECT_EQ(offset % device.sector, 0U);
      EXPECT_EQ(size % device.sector, 0U);
      EXPECT_EQ(reinterpret_cast<uintptr_t>(buffer) % 4096, 0U);
      if (device.reads_fail) return false;
      if (!memory_disk(device.content).read(buffer, size, offset)) size = 0;
      return true;
    }

    uint64_t size() override { return device.handle_size; }

    const memory_device& device;
  };
};

}  // namespace test_support
