#include "sources/vmdk_descriptor.h"

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
  // Both are hexadecimal numbers.
  descriptor.cid = lower_ascii(descriptor.cid);
  descriptor.parent_cid = lower_ascii(descriptor.parent_cid);
  return descriptor;
}

}  // namespace ovrik
