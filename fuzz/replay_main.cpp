// Feeds saved inputs to a fuzz entry without libFuzzer, so that every test run repeats them under
// any compiler. Arguments are files, or folders that are replayed in the order of their names.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> inputs_at(const fs::path& place) {
  if (!fs::is_directory(place)) return {place};
  std::vector<fs::path> inputs;
  for (const auto& item : fs::recursive_directory_iterator(place)) {
    if (item.is_regular_file()) inputs.push_back(item.path());
  }
  std::sort(inputs.begin(), inputs.end());
  return inputs;
}

bool replay(const fs::path& input) {
  std::ifstream file(input, std::ios::binary);
  if (!file) {
    std::fprintf(stderr, "cannot read %s\n", input.string().c_str());
    return false;
  }
  const std::vector<char> content{std::istreambuf_iterator<char>(file), {}};
  // A block of exactly this size: a read one byte past the input is then a sanitizer's finding.
  const std::vector<uint8_t> bytes(content.begin(), content.end());
  // Named first, because a finding ends the program.
  std::printf("%s (%zu bytes)\n", input.string().c_str(), bytes.size());
  std::fflush(stdout);
  LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  size_t replayed = 0;
  for (int index = 1; index < argc; ++index) {
    for (const fs::path& input : inputs_at(argv[index])) {
      if (!replay(input)) return 1;
      ++replayed;
    }
  }
  if (replayed == 0) std::fprintf(stderr, "usage: %s FILE-OR-FOLDER...\n", argv[0]);
  return replayed == 0 ? 1 : 0;
}
