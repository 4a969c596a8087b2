#include "driver/plain_hive.h"

#include <utility>
#include <vector>

#include "base/text.h"
#include "driver/logged_hive.h"
#include "sources/host/file_source.h"
#include "sources/host/host_path.h"
#include "sources/host/lv_portable_dir.h"

namespace ovrik {

namespace {

/// The files beside the hive at `path` that bear the names of its logs, and those that open.
found_logs logs_beside(const std::string& path, std::vector<std::unique_ptr<uni::fileio>>& files) {
  const std::string name = last_component(path);
  std::string folder = path.substr(0, path.size() - name.size());
  if (folder.empty()) folder = ".";
  std::vector<lvportdir::directory_entry> entries;
  lvportdir::list_directory(entries, folder);
  found_logs found;
  for (const lvportdir::directory_entry& entry : entries) {
    const std::string entry_name = lower_ascii(last_component(entry.path));
    for (const char* end : log_name_ends) {
      if (entry.is_directory || entry_name != lower_ascii(name + end)) continue;
      auto file = std::make_unique<uni::fileio>();
      if (!file->open_read(entry.path)) continue;
      found.names.push_back(entry.path);
      found.sources.push_back(log_source_of(*file));
      files.push_back(std::move(file));
    }
  }
  return found;
}

std::unique_ptr<reg_hive> open_with(const std::string& path, const hive_opening& opening,
                                    const std::vector<hive_log_source>& logs) {
  auto file = open_file_source(path);
  if (file == nullptr) return nullptr;
  bool ok = false;
  auto hive = std::make_unique<reg_hive>(source_reader(std::move(file), path), limits_of_hive_files,
                                         opening.faults, ok, logs);
  if (!ok) return nullptr;
  return hive;
}

}  // namespace

std::unique_ptr<reg_hive> open_plain_hive(const std::string& path, const hive_opening& opening) {
  if (!opening.with_logs || !uni::file_opens(path)) return open_with(path, opening, {});
  std::vector<std::unique_ptr<uni::fileio>> files;
  const found_logs logs = logs_beside(path, files);
  return open_with_logs([&](const auto& sources) { return open_with(path, opening, sources); },
                        logs, opening);
}

}  // namespace ovrik
