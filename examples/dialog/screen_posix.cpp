// A terminal in place of a desktop: the dialog's fields are asked for one after the other.
#include <termios.h>
#include <unistd.h>

#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include <vlhostkit/secstring.h>
#include <vlplatform/machine.h>
#include <vlplatform/utf8.h>

#include "logon.h"
#include "resources.h"

namespace {

using vlplatform::ControlTemplate;

// In the order of the dialog; a label says what the field behind it is.
const std::vector<ControlTemplate> kControls = {
    {L"Static", -1, L"User name:", 0},
    {L"Edit", IDC_USER, L"", WS_TABSTOP},
    {L"Static", -1, L"Password:", 0},
    {L"Edit", IDC_PASSWORD, L"", ES_PASSWORD | WS_TABSTOP},
    {L"Static", -1, L"Password again:", 0},
    {L"Edit", IDC_REPEAT, L"", ES_PASSWORD | WS_TABSTOP},
    {L"Static", IDC_HINT, L"", 0},
    {L"Button", IDOK, L"OK", WS_TABSTOP},
    {L"Button", IDCANCEL, L"Cancel", WS_TABSTOP},
};

constexpr char kInterrupt = 3;

// Keeps what is typed off the screen while it lives, if standard input is a terminal. The interrupt key ends a line
// then, as the program could not put the terminal right if it ended here.
class NoEcho {
 public:
  explicit NoEcho(bool wanted) : changed_(wanted && tcgetattr(STDIN_FILENO, &before_) == 0) {
    if (changed_) {
      termios silent = before_;
      silent.c_lflag &= ~static_cast<tcflag_t>(ECHO | ISIG);
      silent.c_cc[VEOL] = kInterrupt;
      tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
    }
  }
  ~NoEcho() {
    if (changed_) {
      tcsetattr(STDIN_FILENO, TCSAFLUSH, &before_);
      std::fputs("\n", stderr);
    }
  }
  NoEcho(const NoEcho&) = delete;
  NoEcho& operator=(const NoEcho&) = delete;

 private:
  termios before_{};
  bool changed_;
};

// Bytes of a line without its end; wiped when they go. None at the end of input, or for the interrupt key.
using Line = std::vector<char, VL::Framework::secallocator<char>>;

// Byte by byte: the C library's buffers would keep a copy.
std::optional<Line> readLine() {
  Line line;
  for (char byte = 0;;) {
    if (read(STDIN_FILENO, &byte, 1) != 1) {
      return line.empty() ? std::nullopt : std::optional(std::move(line));
    }
    if (byte == kInterrupt) {
      return std::nullopt;
    }
    if (byte == '\n') {
      return line;
    }
    line.push_back(byte);
  }
}

void typeInto(HWND field, const Line& line) {
  SendMessageW(field, EM_SETSEL, 0, -1);
  const char* const end = line.data() + line.size();
  for (const char* next = line.data(); next != end;) {
    const auto decoded = vlplatform::utf8::decode(next, end);
    SendMessageW(field, WM_CHAR, decoded.codePoint, 0);
    next += decoded.length;
  }
}

void show(HWND window, const char* between) {
  wchar_t text[256];
  char bytes[4 * 256];
  GetWindowTextW(window, text, 256);
  if (WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes, sizeof(bytes), nullptr, nullptr) > 1) {
    std::fprintf(stderr, "%s%s", bytes, between);
  }
}

// Whoever sits at the terminal. An empty line leaves a field as it is, the end of input is Cancel.
void fillIn(HWND dialog) {
  show(dialog, "\n");
  show(GetDlgItem(dialog, IDC_HINT), "\n");
  std::wstring label;
  for (const ControlTemplate& control : kControls) {
    if (control.windowClass == L"Static") {
      label = control.text;
    } else if (control.windowClass == L"Edit") {
      const HWND field = GetDlgItem(dialog, control.id);
      const bool secret = (control.style & ES_PASSWORD) != 0;
      std::fprintf(stderr, "%ls ", label.c_str());
      if (!secret) {
        show(field, " > ");
      }
      const NoEcho noEcho(secret);
      const std::optional<Line> line = readLine();
      if (!line) {
        SendMessageW(GetDlgItem(dialog, IDCANCEL), BM_CLICK, 0, 0);
        return;
      }
      if (!line->empty()) {
        typeInto(field, *line);
      }
    }
  }
  SendMessageW(GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0);
}

}  // namespace

void prepareScreen() {
  vlplatform::machine().windows().setDialog(nullptr, IDD_LOG_ON, {L"Log on", kControls});
  vlplatform::machine().windows().setUser(fillIn);
}
