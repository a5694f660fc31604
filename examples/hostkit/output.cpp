#include "output.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "console.h"

namespace {

bool writeLine(std::FILE* stream, std::string_view line) {
  std::string bytes(line);
  bytes += '\n';
  errno = 0;
  return std::fwrite(bytes.data(), 1, bytes.size(), stream) == bytes.size();
}

}  // namespace

void Output::result(std::string_view readable, const Json& object) {
  if (json) {
    printObject(object);
  } else {
    print(readable);
  }
}

void Output::failure(std::string_view place, std::string_view words, long long code, Json object) {
  failed_ = true;
  if (json) {
    object["error"] = words;
    object["code"] = code;
    printObject(object);
  } else {
    note(std::string(place) + ": " + std::string(words) + " (" + std::to_string(code) + ")");
  }
}

void Output::print(std::string_view line) {
  check(writeLine(stdout, line));
}

void Output::printObject(const Json& object) {
  print(object.dump(-1, ' ', false, Json::error_handler_t::replace));
}

void Output::note(std::string_view line) {
  flush();
  // Some runtimes keep what goes to a standard error that is no terminal.
  const bool written = writeLine(stderr, line) && std::fflush(stderr) == 0;
  if (!written && readerHasLeft(errno)) {
    throw OutputError("");
  }
}

void Output::flush() {
  errno = 0;
  check(std::fflush(stdout) == 0);
}

// A failure stays one: a later call may find nothing left to write.
void Output::check(bool succeeded) {
  if (!succeeded && errorCode_ == 0) {
    errorCode_ = errno != 0 ? errno : EIO;
  }
  if (errorCode_ != 0) {
    throw OutputError(readerHasLeft(errorCode_) ? std::string()
                                                : std::string("standard output: ") + std::strerror(errorCode_));
  }
}
