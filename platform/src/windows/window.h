/// Windows: their records, the table of them, and what is sent to them. Past the fault gate.
#ifndef VLPLATFORM_SRC_WINDOWS_WINDOW_H
#define VLPLATFORM_SRC_WINDOWS_WINDOW_H

#include <memory>
#include <string_view>
#include <vector>

#include <vlplatform/dialogs.h>
#include <vlplatform/resources.h>

#include "../handletable.h"
#include "../messagequeue.h"
#include "secrettext.h"

namespace vlplatform::windows {

/// The constant members may be read by any thread, the rest by the owner only. Whoever calls receive() keeps the
/// record: the window may end meanwhile.
class Window {
 public:
  Window(HWND parentOrOwner, int identifier, DWORD styleBits)
      : parent(parentOrOwner), id(identifier), style(styleBits) {}
  virtual ~Window() = default;
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  virtual LRESULT receive(UINT message, WPARAM wParam, LPARAM lParam);
  /// What GetWindowLongPtrW names by this index, or null.
  virtual LONG_PTR* value(int) { return nullptr; }

  bool isChild() const { return (style & WS_CHILD) != 0; }

  const DWORD thread = threadId();
  const HWND parent;
  const int id;
  const DWORD style;
  HWND handle = nullptr;
  bool destroying = false;
  bool open = true;
  SecretText text;
};

using WindowPointer = std::shared_ptr<Window>;

class Dialog final : public Window {
 public:
  Dialog(HWND owner, DLGPROC procedure) : Window(owner, 0, WS_POPUP) {
    values_[1] = reinterpret_cast<LONG_PTR>(procedure);
  }
  LRESULT receive(UINT message, WPARAM wParam, LPARAM lParam) override;
  LONG_PTR* value(int index) override;

  bool ended = false;
  INT_PTR result = IDOK;

 private:
  LONG_PTR values_[3] = {};  // DWLP_MSGRESULT, DWLP_DLGPROC, DWLP_USER
};

/// Null for an unknown kind.
WindowPointer makeControl(std::wstring_view windowClass, HWND dialog, int id, DWORD style);

HandleTable<WindowPointer>& table();
/// Opens a window of the calling thread, which has a queue from now on.
HWND open(const WindowPointer& window);
/// Null if it is stale. find() and findOwn() set the last-error value then, findOwn() also for another thread's.
WindowPointer lookUp(HWND window);
WindowPointer find(HWND window);
WindowPointer findOwn(HWND window);
/// In the order in which they were made.
std::vector<HWND> childrenOf(HWND dialog);
/// The first one, or null.
HWND childWithId(HWND dialog, int id);

LRESULT send(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
/// ERROR_SUCCESS, or why not.
DWORD post(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
void destroy(const WindowPointer& window);

HWND focus();
HWND moveFocus(HWND window);

}  // namespace vlplatform::windows

#endif
