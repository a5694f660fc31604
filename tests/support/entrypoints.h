/// Entry points that run-time lookups find, on both targets.
#ifndef SUPPORT_ENTRYPOINTS_H
#define SUPPORT_ENTRYPOINTS_H

#include <string>
#include <utility>
#include <vector>

#include <vlhostkit/types.h>

#ifdef _WIN32
#include <support/importpatch.h>
#else
#include <vlplatform/machine.h>
#endif

namespace support {

using EntryPoint = std::pair<const char*, FARPROC>;

/// While one lives, vlhostkitu finds these in `module`, in place of what is there; with a null address it finds
/// nothing. One at a time. On Windows they are found in any module.
class EntryPoints {
 public:
#ifdef _WIN32
  EntryPoints(const wchar_t*, std::vector<EntryPoint> points)
      : patch_(L"vlhostkitu.dll", "GetProcAddress",
               reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&EntryPoints::find))) {
    points_ = std::move(points);
    original_ = reinterpret_cast<Find>(reinterpret_cast<void*>(patch_.original()));
  }

 private:
  using Find = FARPROC(WINAPI*)(HMODULE, LPCSTR);
  static FARPROC WINAPI find(HMODULE module, LPCSTR name) {
    for (const auto& [known, address] : points_) {
      if (std::string(known) == name) {
        return address;
      }
    }
    return original_(module, name);
  }
  static inline std::vector<EntryPoint> points_;
  static inline Find original_ = nullptr;
  ImportPatch patch_;
#else
  EntryPoints(const wchar_t* module, std::vector<EntryPoint> points) : module_(module), points_(std::move(points)) {
    for (const auto& [name, address] : points_) {
      if (address != nullptr) {
        vlplatform::machine().modules().addEntryPoint(module_, name, address);
      } else {
        vlplatform::machine().modules().removeEntryPoint(module_, name);
      }
    }
  }
  ~EntryPoints() {
    for (const auto& [name, address] : points_) {
      vlplatform::machine().modules().removeEntryPoint(module_, name);
    }
  }
  EntryPoints(const EntryPoints&) = delete;
  EntryPoints& operator=(const EntryPoints&) = delete;

 private:
  std::wstring module_;
  std::vector<EntryPoint> points_;
#endif
};

}  // namespace support

#endif
