#include "base/windows_api_win32.h"
#include "sources/host/device_calls.h"
#include "sources/host/handle_win32.h"

namespace ovrik {

namespace {

class device_of_windows : public open_device_file {
 public:
  explicit device_of_windows(const std::wstring& path)
      : m_file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                           OPEN_EXISTING, FILE_FLAG_RANDOM_ACCESS, nullptr)) {}

  bool is_open() const { return m_file.is_open(); }

  bool ask(uint32_t code, size_t most_bytes, std::vector<uint8_t>& answer) override {
    answer.assign(most_bytes, 0);
    DWORD size = 0;
    const bool answered = DeviceIoControl(m_file.get(), code, nullptr, 0, answer.data(),
                                          static_cast<DWORD>(most_bytes), &size, nullptr) != 0;
    answer.resize(answered ? size : 0);
    return answered;
  }

  bool read(void* buffer, uint32_t& size, uint64_t offset) override {
    DWORD got = 0;
    const bool read = read_handle(m_file.get(), buffer, size, offset, got);
    size = got;
    return read;
  }

  uint64_t size() override { return handle_length(m_file.get()); }

 private:
  file_handle m_file;
};

class devices_of_windows : public device_calls {
 public:
  std::unique_ptr<open_device_file> open(const std::string& path) const override {
    auto device = std::make_unique<device_of_windows>(to_wide(path));
    if (!device->is_open()) return nullptr;
    return device;
  }
};

}  // namespace

const device_calls& devices_of_host() {
  static const devices_of_windows devices;
  return devices;
}

}  // namespace ovrik
