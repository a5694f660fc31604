/// Runs the program txlog_emit under a TXLOG of its own.
#ifndef TESTS_TXLOGU_CHILD_H
#define TESTS_TXLOGU_CHILD_H

#include <filesystem>
#include <string>
#include <vector>

/// A folder that is gone with the test.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  std::filesystem::path operator/(const char8_t* name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

/// Sets TXLOG for the processes started from now on; an empty value removes it.
void setTxlog(const std::filesystem::path& value);

std::filesystem::path emitProgram();

/// Runs txlog_emit with the arguments; its standard error goes to the file. True if it ended with 0.
bool runEmit(const std::string& arguments, const std::filesystem::path& standardError);

std::vector<std::string> linesOf(const std::filesystem::path& file);

#endif
