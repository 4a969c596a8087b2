// ask_windows WHAT TEXT: prints what the program's own layers make of TEXT on this Windows.
//   long-form PATH   the form of the path that may have any length
//   absolute PATH    the path from the root on
//   stripped PATH    the path without the long prefix
//   device PATH      of the device: its size, and the first 8 characters behind byte 3
#include <cstdio>
#include <string>

#include "base/windows_api_win32.h"
#include "sources/disk/raw_device.h"
#include "sources/host/host_path.h"
#include "sources/host/long_path_win32.h"
#include "sources/host/lv_portable_dir.h"

namespace {

std::string device(const std::string& path) {
  const auto disk = ovrik::open_device(ovrik::device_kind::volume, path);
  if (disk == nullptr) return "does not open";
  char name[8] = {};
  uint32_t size = sizeof name;
  if (!disk->read(name, size, 3)) return "cannot be read";
  return std::to_string(disk->size()) + " " + std::string(name, size);
}

std::string answer(const std::wstring& what, const std::string& path) {
  if (what == L"long-form") return ovrik::long_form(path);
  if (what == L"absolute") return ovrik::make_absolute_path(path);
  if (what == L"stripped") return lvportdir::strip_long_prefix(path);
  return device(path);
}

}  // namespace

extern "C" int wmain(int argc, wchar_t** argv) {
  if (argc != 3) return 1;
  std::fputs(answer(argv[1], ovrik::from_wide(argv[2])).c_str(), stdout);
  return 0;
}
