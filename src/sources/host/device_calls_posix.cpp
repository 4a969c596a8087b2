#include "sources/host/device_calls.h"

namespace ovrik {

namespace {

class no_devices : public device_calls {
 public:
  std::unique_ptr<open_device_file> open(const std::string& /*path*/) const override {
    return nullptr;
  }
};

}  // namespace

const device_calls& devices_of_host() {
  static const no_devices none;
  return none;
}

}  // namespace ovrik
