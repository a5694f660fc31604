#include <algorithm>
#include <utility>

#include "../gate.h"
#include "window.h"

namespace vlplatform::windows {
namespace {

std::vector<HWND> windowsThat(auto matches) {
  const OwnAllocations own;
  std::vector<HWND> found;
  for (const HANDLE handle : table().handles(matches)) {
    found.push_back(static_cast<HWND>(handle));
  }
  return found;
}

// What ends with a thread.
struct OfThread {
  HWND focus = nullptr;

  ~OfThread() {
    for (const HWND window : windowsThat([](const WindowPointer& one) { return one->thread == threadId(); })) {
      table().close(window);
    }
  }
};

OfThread& ofThread() {
  thread_local OfThread instance;
  return instance;
}

void close(Window& window) {
  const OwnAllocations own;
  window.open = false;
  if (ofThread().focus == window.handle) {
    ofThread().focus = nullptr;
  }
  table().close(window.handle);
  // Nobody can post to it any more.
  machine().messages().own().drop(window.handle);
}

}  // namespace

HandleTable<WindowPointer>& table() {
  static auto& instance = *new HandleTable<WindowPointer>(Resource::window);
  return instance;
}

HWND open(const WindowPointer& window) {
  const OwnAllocations own;
  ofThread();
  machine().messages().own();
  window->handle = static_cast<HWND>(table().open(window));
  return window->handle;
}

WindowPointer lookUp(HWND window) {
  return table().find(window).value_or(nullptr);
}

WindowPointer find(HWND window) {
  WindowPointer found = lookUp(window);
  if (found == nullptr) {
    SetLastError(ERROR_INVALID_WINDOW_HANDLE);
  }
  return found;
}

WindowPointer findOwn(HWND window) {
  WindowPointer found = find(window);
  if (found != nullptr && found->thread != threadId()) {
    SetLastError(ERROR_ACCESS_DENIED);
    return nullptr;
  }
  return found;
}

std::vector<HWND> childrenOf(HWND dialog) {
  return windowsThat([dialog](const WindowPointer& one) { return one->isChild() && one->parent == dialog; });
}

HWND childWithId(HWND dialog, int id) {
  const auto found = windowsThat(
      [dialog, id](const WindowPointer& one) { return one->isChild() && one->parent == dialog && one->id == id; });
  return found.empty() ? nullptr : found.front();
}

LRESULT send(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const WindowPointer target = findOwn(window);
  return target != nullptr ? target->receive(message, wParam, lParam) : 0;
}

DWORD post(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const OwnAllocations own;
  DWORD code = ERROR_INVALID_WINDOW_HANDLE;
  table().with(window, [&](const WindowPointer& target) {
    const auto queue = machine().messages().find(target->thread);
    if (queue != nullptr) {
      code = queue->post(window, message, wParam, lParam) ? ERROR_SUCCESS : ERROR_NOT_ENOUGH_QUOTA;
    }
  });
  return code;
}

void destroy(const WindowPointer& window) {
  if (std::exchange(window->destroying, true)) {
    return;
  }
  const auto isOwned = [&](const WindowPointer& one) {
    return !one->isChild() && one->parent == window->handle && one->thread == window->thread;
  };
  for (const HWND owned : windowsThat(isOwned)) {
    if (const WindowPointer dialog = lookUp(owned)) {
      destroy(dialog);
    }
  }
  const WindowPointer focused = lookUp(focus());
  if (focused != nullptr && (focused == window || (focused->isChild() && focused->parent == window->handle))) {
    moveFocus(nullptr);
  }
  window->receive(WM_DESTROY, 0, 0);
  for (const HWND child : childrenOf(window->handle)) {
    close(*lookUp(child));
  }
  window->receive(WM_NCDESTROY, 0, 0);
  close(*window);
}

HWND focus() {
  return ofThread().focus;
}

HWND moveFocus(HWND window) {
  const HWND former = std::exchange(ofThread().focus, window);
  if (former == window) {
    return former;
  }
  if (const WindowPointer loser = lookUp(former)) {
    loser->receive(WM_KILLFOCUS, reinterpret_cast<WPARAM>(window), 0);
  }
  const WindowPointer gainer = lookUp(window);
  if (gainer != nullptr && focus() == window) {
    gainer->receive(WM_SETFOCUS, reinterpret_cast<WPARAM>(former), 0);
  }
  return former;
}

}  // namespace vlplatform::windows
