// Writes the sample hive: two control sets of a small Windows 10 machine, the first one current.
// The same bytes come out at every run.

#include <iostream>
#include <span>
#include <string>

#include "support/cache_builder.h"
#include "support/system_hive.h"

namespace {

using namespace test_support;

struct program {
  const char16_t* path;
  uint64_t modified;
};

// Newest use first, as in a live cache.
const program current_programs[] = {
    {u"C:\\Users\\Jürgen\\Downloads\\putty-64bit-0.78-installer.msi",
     filetime(2023, 3, 2, 8, 14, 51, 2'301'877)},
    {u"C:\\Program Files\\7-Zip\\7zFM.exe", filetime(2022, 7, 15, 13, 0, 0)},
    {u"C:\\Windows\\System32\\WindowsPowerShell\\v1.0\\powershell.exe",
     filetime(2022, 11, 5, 6, 22, 18, 4'410'063)},
    {u"C:\\Users\\Jürgen\\AppData\\Local\\Temp\\a|b.exe",
     filetime(2023, 2, 27, 22, 41, 9, 7'730'000)},
    {u"D:\\Tools, portable\\PsExec64.exe", filetime(2021, 5, 25, 10, 40, 36)},
    {u"C:\\Windows\\System32\\cmd.exe", filetime(2022, 11, 5, 6, 22, 4, 9'164'420)},
    {u"C:\\Users\\Jürgen\\Desktop\\Отчёт за февраль.exe",
     filetime(2023, 2, 27, 22, 39, 30, 1'185'206)},
    {u"C:\\Program Files (x86)\\Microsoft\\Edge\\Application\\msedge.exe",
     filetime(2023, 2, 24, 17, 5, 42, 8'020'031)},
    {u"C:\\Program Files\\Café Terminé\\menu.exe", filetime(2021, 9, 30, 12, 30, 15)},
    {u"C:\\Windows\\System32\\net1.exe", filetime(2021, 12, 7, 9, 8, 43, 5'512'340)},
    {u"\\\\fileserver\\install\\設定ツール\\setup.exe", filetime(2022, 4, 18, 3, 27, 55)},
    {u"C:\\Windows\\System32\\svchost.exe", filetime(2021, 12, 7, 9, 8, 30, 2'207'719)},
    {u"SYSVOL\\Windows\\System32\\smss.exe", filetime(2021, 12, 7, 9, 8, 29, 6'421'004)},
};

const program earlier_programs[] = {
    {u"C:\\Program Files\\7-Zip\\7zFM.exe", filetime(2021, 12, 26, 15, 0, 0)},
    {u"C:\\Windows\\System32\\cmd.exe", filetime(2021, 12, 7, 9, 8, 39, 3'026'688)},
    {u"C:\\Windows\\System32\\net1.exe", filetime(2021, 12, 7, 9, 8, 43, 5'512'340)},
    {u"C:\\Windows\\System32\\svchost.exe", filetime(2021, 12, 7, 9, 8, 30, 2'207'719)},
};

bytes cache_of(std::span<const program> programs) {
  cache_builder cache(14);
  for (const program& one : programs) cache.entry(one.path, one.modified);
  return cache.bytes();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: make_sample FILE\n";
    return 2;
  }
  const control_set current = {.cache = cache_of(current_programs),
                               .last_write = filetime(2023, 3, 4, 19, 52, 7, 3'391'250)};
  const control_set earlier = {.number = 2,
                               .cache = cache_of(earlier_programs),
                               .last_write = filetime(2022, 1, 9, 7, 33, 20, 640'118)};
  write_file(argv[1], system_hive({current, earlier}, 1).bytes());
}
