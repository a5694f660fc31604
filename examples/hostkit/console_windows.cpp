#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>

#include "console.h"
#include "text.h"

namespace {

UINT formerInputCodePage = 0;
UINT formerOutputCodePage = 0;

// The console outlives the program, and its code pages are the console's.
void restoreCodePages() {
  SetConsoleCP(formerInputCodePage);
  SetConsoleOutputCP(formerOutputCodePage);
}

}  // namespace

void prepareStreams() {
  for (std::FILE* const stream : {stdin, stdout, stderr}) {
    if (const int file = _fileno(stream); file >= 0) {
      _setmode(file, _O_BINARY);
    }
  }
  formerInputCodePage = GetConsoleCP();
  formerOutputCodePage = GetConsoleOutputCP();
  if (formerInputCodePage != 0 && formerOutputCodePage != 0 && std::atexit(restoreCodePages) == 0) {
    SetConsoleCP(CP_UTF8);
    SetConsoleOutputCP(CP_UTF8);
  }
}

// The runtime has no number of its own for a pipe that is being closed.
bool readerHasLeft(int error) {
  return error == EPIPE || error == EINVAL;
}

// The narrow arguments are in the ANSI code page, which has no more than a few of all characters.
std::vector<std::string> programArguments(int /*argc*/, char** /*argv*/) {
  int count = 0;
  const std::unique_ptr<LPWSTR, decltype(&LocalFree)> list(CommandLineToArgvW(GetCommandLineW(), &count), &LocalFree);
  if (!list) {
    throw std::runtime_error("the command line can't be read");
  }
  std::vector<std::string> arguments;
  for (int index = 1; index < count; ++index) {
    arguments.push_back(toUtf8(list.get()[index]));
  }
  return arguments;
}
