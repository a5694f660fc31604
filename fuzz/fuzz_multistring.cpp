// Registry data of any bytes: what is stored comes back whole or not at all, by every function that reads it, and
// lists that are written come back equal. An input is a type, a capacity and the data; the data of a list is strings
// parted by zeros.
#include <vlhostkit/registry.h>

#include "fuzz.h"

using fuzz::Block;

static constexpr const wchar_t* kPath = L"SOFTWARE\\Fuzz";
static const HKEY kRoot = HKEY_LOCAL_MACHINE;

// `read` takes data and size, `type` is its type. `expected` is what the value holds, where that is known.
template <class Read>
static void check(Read read, DWORD type, DWORD storedType, std::size_t capacity, const std::string* expected) {
  const int done = type == storedType ? 0 : -4;
  DWORD size = 0xbdbd;
  CHECK(read(nullptr, &size) == done && (expected == nullptr || size == expected->size()));
  for (const std::size_t bytes : {std::size_t{size}, capacity, size != 0 ? std::size_t{size} - 1 : 0}) {
    const Block<BYTE> block(bytes);
    auto told = static_cast<DWORD>(bytes);
    const int result = read(block.data(), &told);
    CHECK(result == (bytes >= size ? done : -2) && told == (bytes >= size ? size : bytes));
    CHECK(block.untouched(bytes >= size ? size : 0));
    CHECK(bytes < size || expected == nullptr || std::memcmp(block.data(), expected->data(), size) == 0);
  }
}

template <class Dword, class Name>
static void checkDword(Dword read, Name path, Name name, const std::string& stored, DWORD type) {
  DWORD value = 0xbdbdbdbd, expected = 0xbdbdbdbd;
  const int result = read(kRoot, path, name, &value, 0);
  CHECK(type == REG_DWORD ? result == (stored.size() > 4 ? -1 : 0) : result == -1 || result == -4);
  std::memcpy(&expected, stored.data(), std::min<std::size_t>(stored.size(), 4));
  CHECK(result != 0 || value == expected);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::machine().registry().reset();
  fuzz::Input input(data, size);
  const DWORD type = input.byte() % 12;
  const std::size_t capacity = input.byte();
  const fuzz::Bytes bytes = input.rest();
  const std::string stored(bytes.begin(), bytes.end());
  fuzz::setValue(kPath, L"v", type, stored.data(), stored.size());

  const auto with = [&](auto function, auto path, auto name, auto... section) {
    return [=](BYTE* to, DWORD* count) { return function(kRoot, path, name, to, count, section...); };
  };
  for (const DWORD section : {0u, 0x100u}) {
    check(with(vlRegReadStringValueEx, kPath, L"v", section), REG_SZ, type, capacity, &stored);
    check(with(vlRegReadStringValueExW, kPath, L"v", section), REG_SZ, type, capacity, &stored);
    check(with(vlRegReadMultiStringValueEx, kPath, L"v", section), REG_MULTI_SZ, type, capacity, &stored);
    check(with(vlRegReadMultiStringValueExW, kPath, L"v", section), REG_MULTI_SZ, type, capacity, &stored);
    check(with(vlRegReadBinaryValueEx, kPath, L"v", section), REG_BINARY, type, capacity, &stored);
    check(with(vlRegReadStringValueExA, "SOFTWARE\\Fuzz", "v", section), REG_SZ, type, capacity, nullptr);
    check(with(vlRegReadMultiStringValueExA, "SOFTWARE\\Fuzz", "v", section), REG_MULTI_SZ, type, capacity, nullptr);
  }
  check(with(vlRegReadStringValue, kPath, L"v"), REG_SZ, type, capacity, &stored);
  check(with(vlRegReadMultiStringValue, kPath, L"v"), REG_MULTI_SZ, type, capacity, &stored);
  check(with(vlRegReadBinaryValue, kPath, L"v"), REG_BINARY, type, capacity, &stored);
  checkDword(vlRegReadDWORDValueEx, kPath, L"v", stored, type);
  checkDword(vlRegReadDWORDValueExW, kPath, L"v", stored, type);
  checkDword(vlRegReadDWORDValueExA, "SOFTWARE\\Fuzz", "v", stored, type);

  // Learned first, then read as what it is.
  DWORD told = 0xbd, length = 0xbd;
  CHECK(vlRegReadValue(kRoot, kPath, L"v", &told, nullptr, &length) == 0 && told == type && length == stored.size());
  const auto learned = [&](BYTE* to, DWORD* count) {
    DWORD asked = type;
    return vlRegReadValueEx(kRoot, kPath, L"v", &asked, to, count, 0);
  };
  if (type == REG_SZ || type == REG_BINARY || type == REG_MULTI_SZ) check(learned, type, type, capacity, &stored);
  RegValueEntry entry;
  int count = 1;
  CHECK(vlRegListValueNames(kRoot, kPath, &entry, &count, 0xFFFFFFFF) == 0 && count == 1 && entry.dwType == type);

  // The same bytes as a list of strings, by the narrow reader too where a byte is a character in both widths.
  std::wstring list(bytes.begin(), bytes.end());
  list.append(2, L'\0');
  const std::string wide(reinterpret_cast<const char*>(list.data()), list.size() * sizeof(wchar_t));
  CHECK(vlRegWriteMultiStringValue(kRoot, kPath, L"list", list.data(), static_cast<DWORD>(wide.size())) == 0);
  check(with(vlRegReadMultiStringValue, kPath, L"list"), REG_MULTI_SZ, REG_MULTI_SZ, capacity, &wide);
  const bool plain = std::all_of(bytes.begin(), bytes.end(), [](std::uint8_t byte) { return byte < 0x80; });
  const std::string narrow(list.begin(), list.end());
  check(with(vlRegReadMultiStringValueExA, "SOFTWARE\\Fuzz", "list", 0u), REG_MULTI_SZ, REG_MULTI_SZ, capacity,
        plain ? &narrow : nullptr);
  return 0;
}
