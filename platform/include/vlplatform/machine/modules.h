/// The machine's modules: which libraries and entry points LoadLibraryW and GetProcAddress find.
#ifndef VLPLATFORM_MACHINE_MODULES_H
#define VLPLATFORM_MACHINE_MODULES_H

#include <initializer_list>
#include <memory>
#include <string_view>
#include <utility>

#include <vlplatform/modules.h>

namespace vlplatform {

/// The table starts with the platform's own modules as the stand-in knows them; other names are looked up as real
/// sibling libraries. Names are case-insensitive, entry points are not. Thread-safe; a test sets the table up before
/// it lets other threads load.
class VLPLATFORM_API Modules {
 public:
  using EntryPoint = std::pair<const char*, FARPROC>;

  Modules();
  ~Modules();
  Modules(const Modules&) = delete;
  Modules& operator=(const Modules&) = delete;

  void reset();
  /// Adds a module with its entry points, in place of one of that name.
  void add(std::wstring_view module, std::initializer_list<EntryPoint> entryPoints);
  /// LoadLibraryW no longer finds this module, sibling libraries included.
  void remove(std::wstring_view module);
  /// GetProcAddress finds this entry point of a module of the table, in place of one of that name. Nothing happens if
  /// there is no such module.
  void addEntryPoint(std::wstring_view module, const char* entryPoint, FARPROC address);
  /// GetProcAddress no longer finds this entry point.
  void removeEntryPoint(std::wstring_view module, std::string_view entryPoint);
  /// References that callers hold on a module of the table or a sibling.
  long references(std::wstring_view module) const;

  /// Stands for the program itself: a handle for its resources, and no module that can be loaded or released.
  static HMODULE program();
  /// The handle of a module of the table, or of a sibling that is loaded; null otherwise. No reference is taken.
  HMODULE handle(std::wstring_view name) const;

  /// For the stand-in's functions; 0 is ERROR_SUCCESS.
  DWORD load(std::wstring_view name, HMODULE* module);
  DWORD find(HMODULE module, std::string_view entryPoint, FARPROC* address);
  DWORD free(HMODULE module);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace vlplatform

#endif
