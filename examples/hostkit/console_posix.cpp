#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "console.h"

void prepareStreams() {
  // A reader that has seen enough is a failing write, not the end of the process.
  std::signal(SIGPIPE, SIG_IGN);
  // A standard stream that is closed must not become the next file that is opened. It is opened the wrong way round,
  // so that using it still fails.
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(stream, F_GETFD) == -1) {
      static_cast<void>(open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY));
    }
  }
}

bool readerHasLeft(int error) {
  return error == EPIPE;
}

std::vector<std::string> programArguments(int argc, char** argv) {
  return argc > 0 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}
