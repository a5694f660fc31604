// A toast as text on standard error: there is nothing to click, and what was printed stays.
#include "surface.h"

#include <unistd.h>

#include <cerrno>

#include <vlhostkit/wipe.h>
#include <vlplatform/utf8.h>

namespace toast {
namespace {

// UTF-8 that wipes what it lets go.
using SecretBytes = std::basic_string<char, std::char_traits<char>, VL::Framework::secallocator<char>>;

// No text can steer the terminal, or look like another part of the toast: line ends begin a line with the frame, and
// other control characters are blanks.
void append(SecretBytes& bytes, const secstring& text, const char* frame) {
  bytes += frame;
  for (const wchar_t c : text) {
    if (c == L'\n') {
      bytes += '\n';
      bytes += frame;
      continue;
    }
    char encoded[vlplatform::utf8::kMaxLength];
    const auto codePoint = static_cast<char32_t>(c);
    const char32_t shown = vlplatform::utf8::misleads(codePoint) ? U' ' : codePoint;
    bytes.append(encoded, static_cast<std::size_t>(vlplatform::utf8::encode(shown, encoded)));
  }
  bytes += '\n';
}

bool writeAll(const SecretBytes& bytes) {
  for (std::size_t written = 0; written < bytes.size();) {
    const ssize_t count = ::write(STDERR_FILENO, bytes.data() + written, bytes.size() - written);
    if (count < 0 && errno != EINTR) {
      return false;
    }
    written += count > 0 ? static_cast<std::size_t>(count) : 0;
  }
  return true;
}

class Printed final : public Surface {
 public:
  bool dispatch(const MSG&) override { return false; }
  bool activated() const override { return false; }
};

}  // namespace

std::unique_ptr<Surface> show(const secstring& title, const secstring& body, HRESULT& result) {
  SecretBytes bytes;
  append(bytes, title, "[toast] ");
  append(bytes, body, "      | ");
  if (!writeAll(bytes)) {
    result = E_FAIL;
    return nullptr;
  }
  return std::make_unique<Printed>();
}

std::chrono::milliseconds displayTime() {
  return std::chrono::seconds(5);
}

bool isSlate() {
  return false;
}

}  // namespace toast
