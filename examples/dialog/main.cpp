// logon [USER]: shows the log-on dialog, and says what came of it without showing the password.
#include <cstdio>
#include <exception>

#include <vlafx/exceptions.h>

#include "logon.h"

namespace {

void printUtf8(const wchar_t* text) {
  char bytes[1024];
  if (WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes, sizeof(bytes), nullptr, nullptr) != 0) {
    std::printf("%s", bytes);
  }
}

int logOn(const char* user) {
  LogOnDialog dialog;
  dialog.m_user = user;
  const INT_PTR result = dialog.DoModal();
  if (result == -1) {
    std::fprintf(stderr, "logon: the dialog can't be shown (%u)\n", static_cast<unsigned>(GetLastError()));
    return 2;
  }
  if (result != IDOK) {
    std::puts("Cancelled.");
    return 1;
  }
  std::printf("Logged on as ");
  printUtf8(dialog.m_user.GetString());
  std::printf(", with a password of %d characters.\n", dialog.m_password.GetLength());
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  prepareScreen();
  try {
    return logOn(argc > 1 ? argv[1] : "");
  } catch (CException* exception) {
    exception->Delete();
  } catch (const std::exception&) {
  }
  std::fputs("logon: the dialog failed\n", stderr);
  return 2;
}
