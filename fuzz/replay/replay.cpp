// Runs a fuzzer's target over the files of its corpus, without a fuzzing engine: `replay_NAME FOLDER|FILE...`.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

bool run(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (!file.is_open() || file.bad()) {
    std::fprintf(stderr, "can't read %s\n", path.c_str());
    return false;
  }
  std::printf("%s\n", path.c_str());
  std::fflush(stdout);
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  std::size_t inputs = 0;
  bool allRead = true;
  for (int i = 1; i < argc; ++i) {
    const std::filesystem::path path(argv[i]);
    if (std::filesystem::is_directory(path)) {
      for (const auto& entry : std::filesystem::directory_iterator(path)) {
        allRead = run(entry.path()) && allRead;
        ++inputs;
      }
    } else {
      allRead = run(path) && allRead;
      ++inputs;
    }
  }
  std::printf("%zu inputs\n", inputs);
  return inputs != 0 && allRead ? 0 : 1;
}
