/// The dialog resources of the machine's modules, and who sits before the machine.
#ifndef VLPLATFORM_MACHINE_WINDOWS_H
#define VLPLATFORM_MACHINE_WINDOWS_H

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <vlplatform/dialogs.h>
#include <vlplatform/resources.h>

namespace vlplatform {

/// `windowClass` is "Edit", "Button" or "Static". WS_CHILD is added to the style.
struct ControlTemplate {
  std::wstring windowClass;
  int id = 0;
  std::wstring text;
  DWORD style = 0;
};

struct DialogTemplate {
  std::wstring title;
  std::vector<ControlTemplate> controls;
};

/// Without dialogs and user at start. A null module is the program; of an id the low 16 bits count, and names are not
/// case-sensitive. How many windows are open, controls included, is counted as Resource::window. Thread-safe.
class VLPLATFORM_API Windows {
 public:
  using User = std::function<void(HWND dialog)>;

  /// Dialogs and user go; windows stay.
  void reset();
  /// In place of one of that name. Dialogs that are open stay as they are.
  void setDialog(HINSTANCE module, UINT id, DialogTemplate dialog);
  void setDialog(HINSTANCE module, std::wstring_view name, DialogTemplate dialog);
  /// Whom DialogBoxParamW calls, on the dialog's thread, whenever it has nothing to dispatch, in place of waiting, so
  /// that a terminal's program can let someone type. Without one it waits for messages.
  void setUser(User user);

  /// For the stand-in's functions. Null, with the reason in `code`, if there is none.
  std::shared_ptr<const DialogTemplate> find(HINSTANCE module, LPCWSTR name, LPCWSTR type, DWORD& code) const;
  User user() const;

 private:
  using Key = std::pair<HINSTANCE, std::wstring>;

  mutable std::mutex mutex_;
  std::map<Key, std::shared_ptr<const DialogTemplate>> dialogs_;
  User user_;
};

}  // namespace vlplatform

#endif
