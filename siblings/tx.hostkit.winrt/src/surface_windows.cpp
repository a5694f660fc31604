// A toast as a small window in the corner of the work area, above all others and without the focus.
#include "surface.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>

// The module's own handle, as the linker provides it.
extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace toast {
namespace {

constexpr int kWidth = 360;  // all lengths for 96 dots an inch
constexpr int kMargin = 16;
constexpr int kPadding = 14;
constexpr int kGap = 6;
constexpr int kStripe = 5;
constexpr int kMostBodyLines = 5;
constexpr UINT kTitleFormat = DT_SINGLELINE | DT_END_ELLIPSIS | DT_NOPREFIX;
constexpr UINT kBodyFormat = DT_WORDBREAK | DT_EDITCONTROL | DT_END_ELLIPSIS | DT_NOPREFIX;

HINSTANCE thisModule() {
  return reinterpret_cast<HINSTANCE>(&__ImageBase);
}

HRESULT lastFailure() {
  const DWORD code = GetLastError();
  return code != ERROR_SUCCESS ? HRESULT_FROM_WIN32(code) : E_FAIL;
}

class Font {
 public:
  Font() = default;
  ~Font() {
    if (font_ != nullptr) {
      DeleteObject(font_);
    }
  }
  Font(const Font&) = delete;
  Font& operator=(const Font&) = delete;

  void create(const LOGFONTW& description) { font_ = CreateFontIndirectW(&description); }
  /// The system's own if there is none.
  HGDIOBJ get() const { return font_ != nullptr ? font_ : GetStockObject(DEFAULT_GUI_FONT); }

 private:
  HFONT font_ = nullptr;
};

/// Draws with the font selected.
class Selected {
 public:
  Selected(HDC device, const Font& font) : device_(device), before_(SelectObject(device, font.get())) {}
  ~Selected() { SelectObject(device_, before_); }
  Selected(const Selected&) = delete;
  Selected& operator=(const Selected&) = delete;

 private:
  HDC device_;
  HGDIOBJ before_;
};

class Window final : public Surface {
 public:
  Window(const secstring& title, const secstring& body) : title_(title), body_(body) {
    // A class of its own for each, so that none outlives the module.
    std::swprintf(className_, std::size(className_), L"tx.hostkit.toast.%p", static_cast<void*>(this));
  }
  ~Window() override {
    if (window_ != nullptr) {
      DestroyWindow(window_);
    }
    if (registered_) {
      UnregisterClassW(className_, thisModule());
    }
  }
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  HRESULT open() {
    WNDCLASSEXW description{};
    description.cbSize = sizeof description;
    description.style = CS_DROPSHADOW;
    description.lpfnWndProc = &Window::procedure;
    description.hInstance = thisModule();
    description.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
    description.lpszClassName = className_;
    registered_ = RegisterClassExW(&description) != 0;
    if (!registered_) {
      return lastFailure();
    }
    // Without a text: other programs could read it, and the system keeps it in memory of its own.
    window_ = CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, className_, L"", WS_POPUP, 0, 0, 0,
                              0, nullptr, nullptr, thisModule(), this);
    if (window_ == nullptr) {
      return lastFailure();
    }
    chooseFonts();
    place();
    ShowWindow(window_, SW_SHOWNOACTIVATE);
    UpdateWindow(window_);
    return S_OK;
  }

  // Timers without a window have a function of their own to be called.
  bool dispatch(const MSG& message) override {
    if (message.hwnd == nullptr && message.message != WM_TIMER) {
      return false;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
    return true;
  }

  bool activated() const override { return activated_; }

 private:
  int scaled(int length) const { return MulDiv(length, dotsAnInch_, 96); }

  void chooseFonts() {
    const HDC device = GetDC(window_);
    if (device != nullptr) {
      dotsAnInch_ = std::max(GetDeviceCaps(device, LOGPIXELSY), 96);
      ReleaseDC(window_, device);
    }
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    if (SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0)) {
      LOGFONTW font = metrics.lfMessageFont;
      bodyFont_.create(font);
      font.lfWeight = FW_BOLD;
      font.lfHeight = MulDiv(font.lfHeight, 7, 6);
      titleFont_.create(font);
    }
  }

  // Sizes the window for its texts, a long body up to so many lines, and puts it into the corner.
  void place() {
    const int width = scaled(kWidth);
    const int inner = width - 2 * scaled(kPadding) - scaled(kStripe);
    if (const HDC device = GetDC(window_)) {
      {
        const Selected font(device, titleFont_);
        titleHeight_ = measured(device, L"X", inner, kTitleFormat);
      }
      {
        const Selected font(device, bodyFont_);
        const int line = measured(device, L"X", inner, kTitleFormat);
        bodyHeight_ = std::clamp(measured(device, body_.c_str(), inner, kBodyFormat), line, kMostBodyLines * line);
      }
      ReleaseDC(window_, device);
    }
    const int height = 2 * scaled(kPadding) + titleHeight_ + scaled(kGap) + bodyHeight_;
    RECT area{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    SetWindowPos(window_, HWND_TOPMOST, area.right - width - scaled(kMargin), area.bottom - height - scaled(kMargin),
                 width, height, SWP_NOACTIVATE);
  }

  static int measured(HDC device, const wchar_t* text, int width, UINT format) {
    RECT area{0, 0, width, 0};
    DrawTextW(device, text, -1, &area, format | DT_CALCRECT);
    return area.bottom;
  }

  void paint() const {
    PAINTSTRUCT painting;
    const HDC device = BeginPaint(window_, &painting);
    RECT area;
    GetClientRect(window_, &area);
    FillRect(device, &area, GetSysColorBrush(COLOR_WINDOW));
    FrameRect(device, &area, GetSysColorBrush(COLOR_WINDOWFRAME));
    const RECT stripe{0, 0, scaled(kStripe), area.bottom};
    FillRect(device, &stripe, GetSysColorBrush(COLOR_HIGHLIGHT));
    SetBkMode(device, TRANSPARENT);
    SetTextColor(device, GetSysColor(COLOR_WINDOWTEXT));

    RECT text{stripe.right + scaled(kPadding), scaled(kPadding), area.right - scaled(kPadding), 0};
    text.bottom = text.top + titleHeight_;
    {
      const Selected font(device, titleFont_);
      DrawTextW(device, title_.c_str(), -1, &text, kTitleFormat);
    }
    text.top = text.bottom + scaled(kGap);
    text.bottom = text.top + bodyHeight_;
    {
      const Selected font(device, bodyFont_);
      DrawTextW(device, body_.c_str(), -1, &text, kBodyFormat);
    }
    EndPaint(window_, &painting);
  }

  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
      const auto* const creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
      SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
    }
    auto* const self = reinterpret_cast<Window*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self == nullptr) {
      return DefWindowProcW(window, message, wParam, lParam);
    }
    switch (message) {
      case WM_PAINT:
        self->paint();
        return 0;
      case WM_ERASEBKGND:
        return 1;
      case WM_MOUSEACTIVATE:
        return MA_NOACTIVATE;
      case WM_LBUTTONUP:
      case WM_CLOSE:
        self->activated_ = true;
        return 0;
      case WM_SETTINGCHANGE:
      case WM_DISPLAYCHANGE:
        self->place();
        InvalidateRect(window, nullptr, FALSE);
        return 0;
      case WM_NCDESTROY:
        // By whomever: there is nothing to be seen any more.
        self->window_ = nullptr;
        self->activated_ = true;
        break;
      default:
        break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
  }

  const secstring& title_;
  const secstring& body_;
  wchar_t className_[48];
  bool registered_ = false;
  HWND window_ = nullptr;
  int dotsAnInch_ = 96;
  int titleHeight_ = 0;
  int bodyHeight_ = 0;
  Font titleFont_;
  Font bodyFont_;
  bool activated_ = false;
};

}  // namespace

std::unique_ptr<Surface> show(const secstring& title, const secstring& body, HRESULT& result) {
  auto window = std::make_unique<Window>(title, body);
  result = window->open();
  if (FAILED(result)) {
    return nullptr;
  }
  return window;
}

// What the user has chosen for notifications, 5 seconds where the system does not ask.
std::chrono::milliseconds displayTime() {
  ULONG seconds = 0;
  if (!SystemParametersInfoW(SPI_GETMESSAGEDURATION, 0, &seconds, 0) || seconds == 0) {
    seconds = 5;
  }
  return std::chrono::seconds(seconds);
}

// The second value is also 0 on machines that can't be converted.
bool isSlate() {
  constexpr int kConvertibleSlateMode = 0x2003;  // SM_CONVERTIBLESLATEMODE, which not every SDK has
  return GetSystemMetrics(SM_TABLETPC) != 0 && GetSystemMetrics(kConvertibleSlateMode) == 0;
}

}  // namespace toast
