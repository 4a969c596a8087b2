#include "sources/disk/vmdk_descriptor.h"

#include "base/text.h"

namespace ovrik {

namespace {

struct descriptor_key {
  const char* key;
  std::string vmdk_descriptor::*field;
};

constexpr descriptor_key keys[] = {
    {"cid=", &vmdk_descriptor::cid},
    {"parentcid=", &vmdk_descriptor::parent_cid},
    {"encoding=", &vmdk_descriptor::encoding},
    {"parentfilenamehint=", &vmdk_descriptor::parent_file_hint},
};

/// A hexadecimal number as it is compared: lower-case, without zeros in front.
std::string number_text(const std::string& text) {
  const size_t first = text.find_first_not_of('0');
  return first == std::string::npos ? text : lower_ascii(text.substr(first));
}

}  // namespace

vmdk_descriptor parse_vmdk_descriptor(byte_view bytes) {
  const std::string all = bytes.text();
  vmdk_descriptor descriptor;
  for (const std::string& line : split(all.substr(0, all.find('\0')), '\n')) {
    const std::string lower = lower_ascii(line);
    for (const descriptor_key& row : keys) {
      const std::string key = row.key;
      if (lower.starts_with(key)) descriptor.*row.field = trim(line.substr(key.size()));
    }
  }
  descriptor.cid = number_text(descriptor.cid);
  descriptor.parent_cid = number_text(descriptor.parent_cid);
  return descriptor;
}

}  // namespace ovrik
