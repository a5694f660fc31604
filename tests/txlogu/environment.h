/// Runs the program txlog_emit under a TXLOG of its own.
#ifndef TESTS_TXLOGU_ENVIRONMENT_H
#define TESTS_TXLOGU_ENVIRONMENT_H

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

class Environment : public testing::Test {
 protected:
  Environment() { fs::create_directories(folder); }
  ~Environment() override {
    setTxlog("");
    std::error_code ignored;
    fs::remove_all(folder, ignored);
  }

  /// Sets TXLOG for the processes started from now on; an empty value removes it.
  static void setTxlog(const fs::path& value) {
#ifdef _WIN32
    _wputenv((L"TXLOG=" + value.native()).c_str());
#else
    setenv("TXLOG", value.c_str(), 1);
#endif
  }
  static fs::path toFile(const fs::path& file) {
    return fs::path("file=") += file;
  }

  static std::string emitProgram() {
    const fs::path self = fs::absolute(testing::internal::GetArgvs()[0]);
    return ((self.parent_path() / "txlog_emit") += self.extension()).string();
  }
  /// The lines of a file, all of them with an end.
  static Lines linesOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    Lines lines;
    for (std::string line; std::getline(stream, line); lines.push_back(line)) {
      EXPECT_FALSE(stream.eof()) << "a line without end: " << line;
    }
    return lines;
  }
  /// The lines that a run of txlog_emit leaves on standard error, of which `name` is the file.
  Lines standardErrorOf(const std::string& role, const char* name = "stderr") const {
    const fs::path file = folder / name;
    std::string command = "\"" + emitProgram() + "\" " + role + " 2>\"" + file.string() + "\"";
    // The command interpreter of Windows takes the outermost quotes off.
    if constexpr (fs::path::preferred_separator == '\\') command = "\"" + command + "\"";
    EXPECT_EQ(std::system(command.c_str()), 0);
    return linesOf(file);
  }

  /// Gone with the test.
  const fs::path folder = fs::temp_directory_path() / ("txlogu-" + std::to_string(std::random_device()()));
};

#endif
