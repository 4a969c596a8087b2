// Fills an NTFS image by the library of ntfs-3g, which needs neither a mount nor special rights.
// Commands come line by line from standard input, their words with TABs between; paths begin with
// "/".
//
//   mkdir PATH
//   empty PATH                         a file without content
//   append PATH SOURCE OFFSET LENGTH   bytes of another file, behind what PATH holds
//   link PATH NEW-PATH                 a further name
//   short PATH NAME                    the 8.3 name
//   remove PATH
//   compress PATH                      a folder, whose new files are compressed from then on

#include <sys/stat.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

extern "C" {
#include <ntfs-3g/attrib.h>
#include <ntfs-3g/dir.h>
#include <ntfs-3g/security.h>
#include <ntfs-3g/unistr.h>
#include <ntfs-3g/volume.h>
}

namespace {

using words = std::vector<std::string>;

[[noreturn]] void fail(const std::string& what) {
  throw std::runtime_error(what + ": " + std::strerror(errno));
}

/// A name in the units of the volume; frees itself.
struct unit_name {
  explicit unit_name(const std::string& text) {
    length = ntfs_mbstoucs(text.c_str(), &units);
    if (length <= 0) fail(text);
  }
  ~unit_name() { std::free(units); }
  unit_name(const unit_name&) = delete;
  unit_name& operator=(const unit_name&) = delete;

  ntfschar* units = nullptr;
  int length = 0;
};

/// An open file or folder; closes itself.
class opened {
 public:
  opened(ntfs_volume* volume, const std::string& path)
      : opened(ntfs_pathname_to_inode(volume, nullptr, path.c_str()), path) {}
  opened(ntfs_inode* node, const std::string& path) : m_node(node) {
    if (m_node == nullptr) fail(path);
  }
  ~opened() { close(); }
  opened(const opened&) = delete;
  opened& operator=(const opened&) = delete;

  ntfs_inode* get() const { return m_node; }
  void close() {
    if (m_node != nullptr) ntfs_inode_close(m_node);
    m_node = nullptr;
  }
  /// For calls that close it themselves.
  ntfs_inode* release() { return std::exchange(m_node, nullptr); }

 private:
  ntfs_inode* m_node;
};

std::string folder_of(const std::string& path) {
  const size_t slash = path.rfind('/');
  return slash == 0 ? "/" : path.substr(0, slash);
}

std::string name_of(const std::string& path) { return path.substr(path.rfind('/') + 1); }

void create(ntfs_volume* volume, const std::string& path, mode_t type) {
  const unit_name name(name_of(path));
  const opened folder(volume, folder_of(path));
  const opened made(
      ntfs_create(folder.get(), 0, name.units, static_cast<uint8_t>(name.length), type), path);
}

void make_folder(ntfs_volume* volume, const words& line) { create(volume, line.at(1), S_IFDIR); }

void make_empty(ntfs_volume* volume, const words& line) { create(volume, line.at(1), S_IFREG); }

void append(ntfs_volume* volume, const words& line) {
  std::vector<char> bytes(std::stoull(line.at(4)));
  std::ifstream source(line.at(2), std::ios::binary);
  source.seekg(std::stoll(line.at(3)));
  if (!source.read(bytes.data(), static_cast<std::streamsize>(bytes.size()))) fail(line.at(2));
  const opened file(volume, line.at(1));
  ntfs_attr* const data = ntfs_attr_open(file.get(), AT_DATA, AT_UNNAMED, 0);
  if (data == nullptr) fail(line.at(1));
  const auto size = static_cast<s64>(bytes.size());
  const bool written = ntfs_attr_pwrite(data, data->data_size, size, bytes.data()) == size;
  // What a compressed file still holds back is written now.
  const bool closed = ntfs_attr_pclose(data) == 0;
  ntfs_attr_close(data);
  if (!written || !closed) fail(line.at(1));
}

void add_link(ntfs_volume* volume, const words& line) {
  const unit_name name(name_of(line.at(2)));
  const opened file(volume, line.at(1));
  const opened folder(volume, folder_of(line.at(2)));
  if (ntfs_link(file.get(), folder.get(), name.units, static_cast<uint8_t>(name.length)) != 0) {
    fail(line.at(2));
  }
}

void set_short_name(ntfs_volume* volume, const words& line) {
  opened file(volume, line.at(1));
  opened folder(volume, folder_of(line.at(1)));
  const std::string& name = line.at(2);
  if (ntfs_set_ntfs_dos_name(file.release(), folder.release(), name.c_str(), name.size(), 0) != 0) {
    fail(line.at(1));
  }
}

void remove_file(ntfs_volume* volume, const words& line) {
  const unit_name name(name_of(line.at(1)));
  opened file(volume, line.at(1));
  opened folder(volume, folder_of(line.at(1)));
  if (ntfs_delete(volume, line.at(1).c_str(), file.release(), folder.release(), name.units,
                  static_cast<uint8_t>(name.length)) != 0) {
    fail(line.at(1));
  }
}

void compress_folder(ntfs_volume* volume, const words& line) {
  const opened folder(volume, line.at(1));
  const uint32_t attributes = 0x810;  // compressed, archive
  char bytes[sizeof attributes];
  std::memcpy(bytes, &attributes, sizeof attributes);
  if (ntfs_set_ntfs_attrib(folder.get(), bytes, sizeof bytes, 0) != 0) fail(line.at(1));
}

struct command {
  const char* name;
  void (*run)(ntfs_volume* volume, const words& line);
};

constexpr command commands[] = {
    {"mkdir", make_folder},
    {"empty", make_empty},
    {"append", append},
    {"link", add_link},
    {"short", set_short_name},
    {"remove", remove_file},
    {"compress", compress_folder},
};

void run_line(ntfs_volume* volume, const std::string& text) {
  words line;
  std::istringstream pieces(text);
  for (std::string word; std::getline(pieces, word, '\t');) line.push_back(word);
  for (const command& known : commands) {
    if (!line.empty() && line[0] == known.name) return known.run(volume, line);
  }
  throw std::runtime_error("no such command: " + text);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: fill_ntfs IMAGE < COMMANDS\n";
    return 1;
  }
  ntfs_volume* const volume = ntfs_mount(argv[1], 0);
  if (volume == nullptr) {
    std::perror(argv[1]);
    return 1;
  }
  NVolSetCompression(volume);
  int status = 0;
  try {
    for (std::string line; std::getline(std::cin, line);) run_line(volume, line);
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    status = 1;
  }
  return ntfs_umount(volume, FALSE) == 0 ? status : 1;
}
