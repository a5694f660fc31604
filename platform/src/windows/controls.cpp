#include <algorithm>

#include "../gate.h"
#include "../unicode.h"
#include "window.h"

namespace vlplatform::windows {
namespace {

class Control : public Window {
 public:
  using Window::Window;

 protected:
  void notify(int code) {
    send(parent, WM_COMMAND, MAKEWPARAM(static_cast<WORD>(id), static_cast<WORD>(code)),
         reinterpret_cast<LPARAM>(handle));
  }
};

class Button final : public Control {
 public:
  using Control::Control;

  LRESULT receive(UINT message, WPARAM wParam, LPARAM lParam) override {
    if (message != BM_CLICK) {
      return Control::receive(message, wParam, lParam);
    }
    moveFocus(handle);
    if (open) {
      notify(BN_CLICKED);
    }
    return 0;
  }
};

class Edit final : public Control {
 public:
  using Control::Control;

  LRESULT receive(UINT message, WPARAM wParam, LPARAM lParam) override {
    switch (message) {
      case WM_CHAR:
        type(static_cast<wchar_t>(wParam));
        return TRUE;
      case WM_SETTEXT:
        Control::receive(message, wParam, lParam);
        anchor_ = caret_ = 0;
        changed();
        return TRUE;
      case WM_SETFOCUS:
        notify(EN_SETFOCUS);
        return 0;
      case WM_KILLFOCUS:
        notify(EN_KILLFOCUS);
        return 0;
      case EM_GETSEL:
        return selection(reinterpret_cast<DWORD*>(wParam), reinterpret_cast<DWORD*>(lParam));
      case EM_SETSEL:
        select(static_cast<UINT>(wParam), static_cast<UINT>(lParam));
        return TRUE;
      case EM_LIMITTEXT:
        limit_ = wParam != 0 ? wParam : kHighestLimit;
        return 0;
      default:
        return Control::receive(message, wParam, lParam);
    }
  }

 private:
  static constexpr std::size_t kHighestLimit = 0x7FFFFFFE;

  void changed() {
    notify(EN_UPDATE);
    if (open) {
      notify(EN_CHANGE);
    }
  }
  void replace(std::size_t from, std::size_t to, const wchar_t* characters, std::size_t count) {
    text.replace(from, to, characters, count);
    anchor_ = caret_ = from + count;
    changed();
  }
  void type(wchar_t character) {
    constexpr wchar_t kBackspace = 8;
    constexpr wchar_t kDelete = 127;
    if ((style & ES_READONLY) != 0) {
      return;
    }
    const std::size_t from = std::min(anchor_, caret_);
    const std::size_t to = std::max(anchor_, caret_);
    if (character == kBackspace) {
      if (to != 0) {
        replace(from != to ? from : from - 1, to, nullptr, 0);
      }
    } else if (character >= L' ' && character != kDelete) {
      if (text.size() - (to - from) < limit_) {
        replace(from, to, &character, 1);
      } else {
        notify(EN_MAXTEXT);
      }
    }
  }
  LRESULT selection(DWORD* from, DWORD* to) const {
    const auto first = static_cast<DWORD>(std::min(anchor_, caret_));
    const auto last = static_cast<DWORD>(std::max(anchor_, caret_));
    if (from != nullptr) {
      *from = first;
    }
    if (to != nullptr) {
      *to = last;
    }
    return last > 0xFFFF ? -1 : static_cast<LRESULT>(MAKEWPARAM(first, last));
  }
  void select(UINT anchor, UINT caret) {
    if (anchor == static_cast<UINT>(-1)) {
      anchor_ = caret_;
      return;
    }
    anchor_ = std::min<std::size_t>(anchor, text.size());
    caret_ = std::min<std::size_t>(caret, text.size());
  }

  std::size_t anchor_ = 0;
  std::size_t caret_ = 0;
  std::size_t limit_ = 32767;
};

}  // namespace

LRESULT Window::receive(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_SETTEXT:
      text.assign(reinterpret_cast<LPCWSTR>(lParam));
      return TRUE;
    case WM_GETTEXT:
      return static_cast<LRESULT>(text.copy(reinterpret_cast<LPWSTR>(lParam), wParam));
    case WM_GETTEXTLENGTH:
      return static_cast<LRESULT>(text.size());
    case WM_CLOSE:
      if (const WindowPointer self = lookUp(handle)) {
        destroy(self);
      }
      return 0;
    default:
      return 0;
  }
}

WindowPointer makeControl(std::wstring_view windowClass, HWND dialog, int id, DWORD style) {
  const OwnAllocations own;
  style |= WS_CHILD;
  if (sameName(windowClass, L"Edit")) {
    return std::make_shared<Edit>(dialog, id, style);
  }
  if (sameName(windowClass, L"Button")) {
    return std::make_shared<Button>(dialog, id, style);
  }
  return sameName(windowClass, L"Static") ? std::make_shared<Window>(dialog, id, style) : nullptr;
}

}  // namespace vlplatform::windows
