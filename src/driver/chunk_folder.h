// The folder that carving leaves its files in, and which of the files there are its own.
#pragma once

#include <string>
#include <vector>

namespace ovrik {

constexpr const char* chunk_folder = "out3";

/// The path of a file in the folder.
std::string chunk_folder_path(const std::string& name);

/// The names of the files that earlier runs left in the folder: plain files named "stats.txt",
/// "chunk_N.bin" or "chunk_N_other.bin" with a decimal N, but for those that begin like a hive or a
/// virtual disk, which no chunk does.
std::vector<std::string> earlier_chunk_files();

/// True if a plain file of that name stands in the folder and no run of carving left it.
bool is_foreign_in_chunk_folder(const std::string& name);

}  // namespace ovrik
