#include "child.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <random>

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
  std::random_device random;
  path_ = fs::temp_directory_path() / ("txlogu-" + std::to_string(random()) + std::to_string(random()));
  fs::create_directories(path_);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

void setTxlog(const fs::path& value) {
#ifdef _WIN32
  _wputenv((L"TXLOG=" + value.native()).c_str());
#else
  setenv("TXLOG", value.c_str(), 1);
#endif
}

fs::path emitProgram() {
  const fs::path self = fs::absolute(testing::internal::GetArgvs()[0]);
  fs::path program = self.parent_path() / "txlog_emit";
  program += self.extension();
  return program;
}

bool runEmit(const std::string& arguments, const fs::path& standardError) {
  std::string command = "\"" + emitProgram().string() + "\" " + arguments + " 2>\"" + standardError.string() + "\"";
  // The command interpreter of Windows takes the outermost quotes off.
  if constexpr (fs::path::preferred_separator == '\\') command = "\"" + command + "\"";
  return std::system(command.c_str()) == 0;
}

std::vector<std::string> linesOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) {
    EXPECT_FALSE(stream.eof()) << "a line without end: " << line;
    lines.push_back(line);
  }
  return lines;
}
