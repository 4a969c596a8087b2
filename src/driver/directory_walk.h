// Sources of paths: the files of a folder tree.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "driver/options/file_filter.h"
#include "driver/stdin_stream.h"
#include "sources/host/lv_portable_dir.h"

namespace lvportdir {

/// Gives the files of a tree, one a call, depth first from the folder that was listed last, and the
/// files of a folder in reverse order. Links to folders are followed, each target once. Holds only
/// what was found and not yet handed out.
class stdin_stream_ex : public uni::stdin_stream {
 public:
  /// Starts at `root` with the folders down to `max_depth` levels below it. Files are given when a
  /// filter accepts them, or cannot tell because the file does not open.
  stdin_stream_ex(const std::string& root, uint32_t max_depth,
                  const std::vector<ovrik::file_filter>& filters);

  bool next_line(std::string& line) override;

 private:
  struct queued_folder {
    std::string path;
    uint32_t depth;
  };

  void list(const queued_folder& folder);

  /// False for a link that leads back to where the walk has been.
  bool may_enter(const std::string& folder);

  std::deque<queued_folder> m_dir_queue;
  std::deque<std::string> m_file_queue;
  uint32_t m_max_depth;
  const std::vector<ovrik::file_filter>& m_filters;
  std::vector<link_target> m_entered_links;
};

}  // namespace lvportdir
