#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "selfcall.h"

namespace {

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() { close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int number() const { return number_; }
  void close() {
    if (number_ >= 0) {
      ::close(number_);
    }
    number_ = -1;
  }

 private:
  int number_;
};

std::string readAll(int descriptor) {
  std::string text;
  std::array<char, 4096> buffer;
  for (;;) {
    const ssize_t count = read(descriptor, buffer.data(), buffer.size());
    if (count > 0) {
      text.append(buffer.data(), static_cast<std::size_t>(count));
    } else if (count == 0 || errno != EINTR) {
      return text;
    }
  }
}

int waitFor(pid_t process) {
  int status = 0;
  while (waitpid(process, &status, 0) < 0) {
    if (errno != EINTR) {
      return -1;
    }
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace

SelfCall callSelf(const std::vector<std::string>& arguments) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) {
    return {-1, "no pipe"};
  }
  const Descriptor readEnd(ends[0]);
  Descriptor writeEnd(ends[1]);

  std::vector<std::string> texts{"hostkit"};
  texts.insert(texts.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) {
    pointers.push_back(text.data());
  }
  pointers.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, writeEnd.number(), STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, writeEnd.number(), STDERR_FILENO);
  pid_t process = 0;
  const int error = posix_spawn(&process, "/proc/self/exe", &actions, nullptr, pointers.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  writeEnd.close();
  if (error != 0) {
    return {-1, "the program can't be run again"};
  }
  std::string output = readAll(readEnd.number());
  const int exitCode = waitFor(process);
  while (output.ends_with('\n')) {
    output.pop_back();
  }
  return {exitCode, std::move(output)};
}
