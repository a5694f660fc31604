/// The machine's registry.
#ifndef VLPLATFORM_MACHINE_REGISTRY_H
#define VLPLATFORM_MACHINE_REGISTRY_H

#include <memory>
#include <string>
#include <string_view>

#include <vlplatform/registry.h>

namespace vlplatform {

/// At first it has HKEY_LOCAL_MACHINE\SOFTWARE with Wow6432Node, HKEY_LOCAL_MACHINE\SYSTEM and
/// HKEY_CURRENT_USER\Software, which can't be deleted, and nothing else. Thread-safe.
///
/// Registry text is what the platform's own tools export and import (.reg). It is read in UTF-16LE with a byte order
/// mark and in UTF-8 with or without one, under both headers, and written in UTF-16LE under the newer: keys by name,
/// values in their order, volatile keys not at all. Text in memory has 4 bytes a character and in the file 2: REG_SZ,
/// REG_EXPAND_SZ and REG_MULTI_SZ are converted. A single byte behind the last character is kept as it is. Text that
/// UTF-16 can't tell back (two or three bytes more, a number that is no character, a surrogate pair as two characters)
/// is written byte by byte behind a comment that says so.
///
/// Where the environment variable VLPLATFORM_REGISTRY names a file, it is loaded at the first use after start or
/// reset(), and saved after each change before the call returns. So processes may use it one after another; of two at
/// once the last to save wins. If saving fails, the call gives ERROR_REGISTRY_IO_FAILED and the file stays as it was;
/// the change is in memory and saved with the next one. A file that is broken or can't be read is reported on the
/// standard error stream, once, and never written: until reset() all calls fail with ERROR_BADDB.
class VLPLATFORM_API Registry {
 public:
  /// How the work on a file ended: without a message, well.
  struct Result {
    std::string message{};
    unsigned line = 0;  ///< of the file, from 1; 0 if no line is to blame
    bool ok() const { return message.empty(); }
  };

  Registry();
  ~Registry();
  Registry(const Registry&) = delete;
  Registry& operator=(const Registry&) = delete;

  /// The content as at first, nothing denied. Open handles stay open, on keys that are deleted.
  void reset();

  /// Adds what the file says to what is there, as an import does; denied rights don't count, and what lies below a
  /// volatile key becomes volatile. A broken file changes nothing.
  Result load(const std::string& path);
  /// The same with the bytes of a file.
  Result loadText(std::string_view bytes);
  /// By way of another file in the same folder: at no moment is `path` half written, and if saving fails it is what
  /// it was.
  Result save(const std::string& path) const;
  /// The bytes of such a file.
  std::string text() const;

  /// From now on opening the key with one of `rights` gives ERROR_ACCESS_DENIED, as do, with KEY_CREATE_SUB_KEY, making
  /// a key below it, and with DELETE, deleting it. Replaces what was denied before; 0 allows all. `path` is that of the
  /// 64-bit view. ERROR_FILE_NOT_FOUND if there is no such key.
  DWORD deny(HKEY root, std::wstring_view path, REGSAM rights);

  /// For the stand-in's functions.
  struct State;
  State& state() { return *state_; }

 private:
  std::unique_ptr<State> state_;
};

}  // namespace vlplatform

#endif
