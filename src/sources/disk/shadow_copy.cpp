#include "sources/disk/shadow_copy.h"

#include "base/text.h"

namespace ovrik {

namespace {

constexpr const char* device_prefix = R"(\\?\GLOBALROOT\Device\HarddiskVolumeShadowCopy)";
constexpr const char* identifier_prefix = R"(\\.\snapid_)";
constexpr size_t identifier_length = 36;

/// What stands from the first backslash at or behind `from` on; all of it if there is none.
std::string from_backslash(const std::string& path, size_t from) {
  const size_t at = path.find('\\', from);
  return at == std::string::npos ? path : path.substr(at);
}

}  // namespace

std::string shadow_copy_prefix() { return device_prefix; }

std::string shadow_copy_device(const std::string& value) {
  const std::string prefix = shadow_copy_prefix();
  const size_t at = value.find(prefix);
  if (at == std::string::npos) return prefix + value;
  const size_t number = at + prefix.size();
  return prefix + value.substr(number, value.find('\\', number) - number);
}

std::string without_shadow_copy_device(const std::string& path) {
  const std::string lower = lower_ascii(path);
  const std::string prefix = lower_ascii(shadow_copy_prefix());
  if (lower.starts_with(prefix) && lower.size() > prefix.size()) {
    return from_backslash(path, prefix.size());
  }
  const std::string identifier = identifier_prefix;
  const size_t end = identifier.size() + identifier_length;
  if (lower.starts_with(identifier) && lower.size() > end) return from_backslash(path, end);
  return path;
}

}  // namespace ovrik
