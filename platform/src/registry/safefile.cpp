#include "safefile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

namespace vlplatform::registry {
namespace {

class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor() { close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int get() const { return fd_; }
  bool open() const { return fd_ >= 0; }
  bool close() {
    const int fd = fd_;
    fd_ = -1;
    return fd < 0 || ::close(fd) == 0;
  }

 private:
  int fd_;
};

std::string problem(const char* what) {
  return std::string(what) + ": " + std::strerror(errno);
}

bool writeAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(fd, bytes.data(), bytes.size());
    if (written > 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      return false;
    }
  }
  return true;
}

// Empty on success. The temporary file may remain on failure.
std::string fillAndRename(Descriptor& file, const std::string& temporary, const std::string& target,
                          std::string_view bytes) {
  struct stat old {};
  if (stat(target.c_str(), &old) == 0 && fchmod(file.get(), old.st_mode & 07777) != 0) {
    return problem("can't give the new file the rights of the old one");
  }
  if (!writeAll(file.get(), bytes) || fsync(file.get()) != 0 || !file.close()) {
    return problem("can't write");
  }
  return rename(temporary.c_str(), target.c_str()) == 0 ? std::string() : problem("can't replace the file");
}

}  // namespace

std::string replaceFile(const std::string& path, std::string_view bytes) {
  const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(path.c_str(), nullptr), &std::free);
  const std::string target = resolved != nullptr ? resolved.get() : path;
  std::string temporary = target + ".XXXXXX";
  Descriptor file(mkostemp(temporary.data(), O_CLOEXEC));
  if (!file.open()) {
    return problem("can't make a file beside it");
  }
  std::string error = fillAndRename(file, temporary, target, bytes);
  if (!error.empty()) {
    unlink(temporary.c_str());
    return error;
  }
  // The new name reaches the disk with its folder. Where that can't be had, the file is still whole.
  const std::size_t slash = target.rfind('/');
  const std::string folder = slash == std::string::npos ? "." : target.substr(0, slash + 1);
  const Descriptor directory(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (directory.open()) {
    fsync(directory.get());
  }
  return {};
}

std::optional<std::string> readFile(const std::string& path, std::string* error) {
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file.open()) {
    if (errno != ENOENT) {
      *error = problem("can't open the file");
    }
    return std::nullopt;
  }
  std::string bytes;
  std::vector<char> part(1 << 16);
  for (;;) {
    const ssize_t count = read(file.get(), part.data(), part.size());
    if (count == 0) {
      return bytes;
    }
    if (count > 0) {
      bytes.append(part.data(), static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      *error = problem("can't read the file");
      return std::nullopt;
    }
  }
}

}  // namespace vlplatform::registry
