/// Registry values between their bytes and what is typed and shown. Text from the registry is anybody's: it may lack
/// its terminator, go on behind it, or end within a character.
#ifndef HOSTKIT_REGISTRYVALUE_H
#define HOSTKIT_REGISTRYVALUE_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "output.h"
#include "registrykey.h"

/// "REG_SZ", or "type 123" for a type that has no name here.
std::string nameOfType(DWORD type);
/// The words for types on the command line: those that the library reads, and those with all that have a name.
std::vector<std::string> readableTypes();
std::vector<std::string> knownTypes();
/// `word` is one of them.
DWORD typeFromWord(std::string_view word);

struct RegistryValue {
  int result;
  std::optional<DWORD> type;  ///< as it is stored, if that was learned
  std::vector<BYTE> data;     ///< as it is stored; also for REG_EXPAND_SZ, which is never read but as another type
};

/// Reads by the function of `type`, or of the type that the value has.
RegistryValue readValue(const RegistryKey& key, const std::string& name, std::optional<DWORD> type);

/// A value to look at. The members of `object` don't depend on the target.
struct ShownValue {
  std::string readable;
  Json object;
};
ShownValue shownValue(DWORD type, const std::vector<BYTE>& data);

/// The bytes of a value to store, or what is wrong with `texts`.
struct Encoded {
  std::vector<BYTE> data;
  std::string problem;
};
Encoded encoded(DWORD type, const std::vector<std::string>& texts);

/// Stores the bytes. `type` is one that encoded() takes.
int writeValue(const RegistryKey& key, const std::string& name, DWORD type, const std::vector<BYTE>& data);

#endif
