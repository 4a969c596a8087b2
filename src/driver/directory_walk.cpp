#include "driver/directory_walk.h"

#include <algorithm>

namespace lvportdir {

stdin_stream_ex::stdin_stream_ex(const std::string& root, uint32_t max_depth,
                                 const std::vector<ovrik::file_filter>& filters)
    : m_max_depth(max_depth), m_filters(filters) {
  m_dir_queue.push_back({root, 0});
}

bool stdin_stream_ex::next_line(std::string& line) {
  while (m_file_queue.empty() && !m_dir_queue.empty()) {
    const queued_folder folder = std::move(m_dir_queue.back());
    m_dir_queue.pop_back();
    list(folder);
  }
  line.clear();
  if (m_file_queue.empty()) return false;
  line = std::move(m_file_queue.back());
  m_file_queue.pop_back();
  return true;
}

void stdin_stream_ex::list(const queued_folder& folder) {
  std::vector<directory_entry> entries;
  list_directory(entries, folder.path);
  for (directory_entry& entry : entries) {
    if (entry.is_directory) {
      if (folder.depth < m_max_depth && may_enter(entry.path)) {
        m_dir_queue.push_back({std::move(entry.path), folder.depth + 1});
      }
      continue;
    }
    bool unreadable = false;
    if (ovrik::filter_accepts_path(entry.path, m_filters, unreadable) || unreadable) {
      m_file_queue.push_back(std::move(entry.path));
    }
  }
}

bool stdin_stream_ex::may_enter(const std::string& folder) {
  link_target target;
  bool closes_cycle = false;
  if (!is_folder_link(folder, target, closes_cycle)) return true;
  const auto entered = std::find(m_entered_links.begin(), m_entered_links.end(), target);
  if (closes_cycle || entered != m_entered_links.end()) return false;
  m_entered_links.push_back(target);
  return true;
}

}  // namespace lvportdir
