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
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
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

/// An open file or folder; closes itself.
using node = std::unique_ptr<ntfs_inode, int (*)(ntfs_inode*)>;

void need(bool worked, const std::string& what) {
  if (!worked) throw std::runtime_error(what + ": " + std::strerror(errno));
}

node open(ntfs_volume* volume, const std::string& path) {
  node found(ntfs_pathname_to_inode(volume, nullptr, path.c_str()), ntfs_inode_close);
  need(found != nullptr, path);
  return found;
}

node open_folder_of(ntfs_volume* volume, const std::string& path) {
  const size_t slash = path.rfind('/');
  return open(volume, slash == 0 ? "/" : path.substr(0, slash));
}

/// The last part of a path in the units of the volume.
std::vector<ntfschar> name_of(const std::string& path) {
  ntfschar* units = nullptr;
  const int length = ntfs_mbstoucs(path.c_str() + path.rfind('/') + 1, &units);
  need(length > 0, path);
  const std::vector<ntfschar> name(units, units + length);
  std::free(units);
  return name;
}

uint8_t length_of(const std::vector<ntfschar>& name) { return static_cast<uint8_t>(name.size()); }

void append(ntfs_volume* volume, const words& line) {
  std::vector<char> bytes(std::stoull(line.at(4)));
  std::ifstream source(line.at(2), std::ios::binary);
  source.seekg(std::stoll(line.at(3)));
  const auto size = static_cast<s64>(bytes.size());
  need(static_cast<bool>(source.read(bytes.data(), size)), line.at(2));
  const node file = open(volume, line.at(1));
  ntfs_attr* const data = ntfs_attr_open(file.get(), AT_DATA, AT_UNNAMED, 0);
  need(data != nullptr, line.at(1));
  const bool written = ntfs_attr_pwrite(data, data->data_size, size, bytes.data()) == size;
  // What a compressed file still holds back is written now.
  const bool closed = ntfs_attr_pclose(data) == 0;
  ntfs_attr_close(data);
  need(written && closed, line.at(1));
}

void run_line(ntfs_volume* volume, const words& line) {
  const std::string &command = line.at(0), &path = line.at(1);
  if (command == "mkdir" || command == "empty") {
    const auto name = name_of(path);
    const mode_t type = command == "mkdir" ? S_IFDIR : S_IFREG;
    const node folder = open_folder_of(volume, path);
    const node made(ntfs_create(folder.get(), 0, name.data(), length_of(name), type),
                    ntfs_inode_close);
    need(made != nullptr, path);
  } else if (command == "append") {
    append(volume, line);
  } else if (command == "link") {
    const auto name = name_of(line.at(2));
    const node file = open(volume, path), folder = open_folder_of(volume, line.at(2));
    need(ntfs_link(file.get(), folder.get(), name.data(), length_of(name)) == 0, path);
  } else if (command == "compress") {
    const node folder = open(volume, path);
    const uint32_t attributes = 0x810;  // compressed, archive
    char bytes[sizeof attributes];
    std::memcpy(bytes, &attributes, sizeof attributes);
    need(ntfs_set_ntfs_attrib(folder.get(), bytes, sizeof bytes, 0) == 0, path);
  } else if (command == "short" || command == "remove") {  // these calls close the files themselves
    node file = open(volume, path), folder = open_folder_of(volume, path);
    ntfs_inode *const child = file.release(), *const parent = folder.release();
    if (command == "short") {
      const std::string& name = line.at(2);
      need(ntfs_set_ntfs_dos_name(child, parent, name.c_str(), name.size(), 0) == 0, path);
    } else {
      const auto name = name_of(path);
      need(ntfs_delete(volume, path.c_str(), child, parent, name.data(), length_of(name)) == 0,
           path);
    }
  } else {
    throw std::runtime_error("no such command: " + command);
  }
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
    for (std::string text; std::getline(std::cin, text);) {
      std::istringstream pieces(text);
      words line;
      for (std::string word; std::getline(pieces, word, '\t');) line.push_back(word);
      run_line(volume, line);
    }
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    status = 1;
  }
  return ntfs_umount(volume, FALSE) == 0 ? status : 1;
}
