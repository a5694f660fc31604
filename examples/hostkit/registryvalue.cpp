#include "registryvalue.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "number.h"
#include "results.h"
#include "text.h"

namespace {

struct Type {
  DWORD number;
  const char* word;
  const char* name;
  bool readable;
};

constexpr Type kTypes[] = {
    {REG_DWORD, "dword", "REG_DWORD", true},    {REG_QWORD, "qword", "REG_QWORD", true},
    {REG_SZ, "string", "REG_SZ", true},         {REG_MULTI_SZ, "multi", "REG_MULTI_SZ", true},
    {REG_BINARY, "binary", "REG_BINARY", true}, {REG_EXPAND_SZ, "expand", "REG_EXPAND_SZ", false},
    {REG_NONE, "none", "REG_NONE", false},
};

// How often a value that changes between two calls is read anew.
constexpr int kMostTries = 10;

// Learns the size by a first call and the data by a second, and keeps what the second says of the size.
template <class Read>
int readSized(Read read, std::vector<BYTE>* data) {
  int result = kRegistryTooSmall;
  for (int tries = 0; tries < kMostTries && result == kRegistryTooSmall; ++tries) {
    DWORD bytes = 0;
    result = read(nullptr, &bytes);
    if (result != kRegistryDone && result != kRegistryOtherType) {
      return result;
    }
    data->assign(bytes + sizeof(wchar_t), 0);
    bytes = static_cast<DWORD>(data->size());
    result = read(data->data(), &bytes);
    data->resize(bytes);
  }
  return result;
}

DWORD sizeOf(DWORD type) {
  return type == REG_DWORD ? sizeof(DWORD) : sizeof(ULONGLONG);
}

// The generic read, of a type that is known. Types of one size leave the size alone.
int readGeneric(const RegistryKey& key, LPCWSTR name, DWORD type, std::vector<BYTE>* data) {
  const auto read = [&](BYTE* bytes, DWORD* size) {
    DWORD asked = type;
    return vlRegReadValueEx(key.root, key.path.c_str(), name, &asked, bytes, size, key.section);
  };
  if (type != REG_DWORD && type != REG_QWORD) {
    return readSized(read, data);
  }
  data->assign(sizeOf(type), 0);
  DWORD size = sizeOf(type);
  return read(data->data(), &size);
}

int readTyped(const RegistryKey& key, LPCWSTR name, DWORD type, std::vector<BYTE>* data) {
  const auto sized = [&](auto function) {
    return readSized(
        [&](BYTE* bytes, DWORD* size) { return function(key.root, key.path.c_str(), name, bytes, size, key.section); },
        data);
  };
  switch (type) {
    case REG_SZ:
      return sized(vlRegReadStringValueEx);
    case REG_MULTI_SZ:
      return sized(vlRegReadMultiStringValueEx);
    case REG_BINARY:
      return sized(vlRegReadBinaryValueEx);
    case REG_DWORD: {
      DWORD number = 0;
      const int result = vlRegReadDWORDValueEx(key.root, key.path.c_str(), name, &number, key.section);
      const auto* const raw = reinterpret_cast<const BYTE*>(&number);
      data->assign(raw, raw + sizeof number);
      return result;
    }
    default:
      return readGeneric(key, name, type, data);
  }
}

std::wstring charactersOf(const std::vector<BYTE>& data) {
  std::wstring chars(data.size() / sizeof(wchar_t), L'\0');
  std::memcpy(chars.data(), data.data(), chars.size() * sizeof(wchar_t));
  return chars;
}

// What is irregular about a text is told beside it.
class Shower {
 public:
  explicit Shower(const std::vector<BYTE>& data) : data_(data), chars_(charactersOf(data)) {}

  ShownValue string() {
    const std::size_t end = std::min(chars_.find(L'\0'), chars_.size());
    remark(end == chars_.size(), "no terminator");
    const std::string text = toUtf8(chars_.substr(0, end));
    return finished("'" + shown(text) + "'", "text", text, end + 1);
  }

  ShownValue strings() {
    std::string readable;
    Json texts = Json::array();
    std::size_t at = 0;
    while (at < chars_.size() && chars_[at] != L'\0') {
      const std::size_t end = std::min(chars_.find(L'\0', at), chars_.size());
      remark(end == chars_.size(), "no terminator");
      const std::string text = toUtf8(chars_.substr(at, end - at));
      readable += (readable.empty() ? "'" : " '") + shown(text) + "'";
      texts.push_back(text);
      at = end + 1;
    }
    remark(at >= chars_.size(), "no closing NUL");
    return finished(readable.empty() ? "empty" : readable, "texts", texts, at + 1);
  }

 private:
  void remark(bool applies, const char* words) {
    if (applies) {
      remarks_.emplace_back(words);
    }
  }
  ShownValue finished(std::string readable, const char* member, Json value, std::size_t end) {
    remark(chars_.find_first_not_of(L'\0', end) != std::wstring::npos, "more behind its end");
    remark(data_.size() % sizeof(wchar_t) != 0, "a part of a character at its end");
    Json object{{member, std::move(value)}};
    for (const std::string& words : remarks_) {
      readable += ", " + words;
    }
    if (!remarks_.empty()) {
      object["remarks"] = remarks_;
    }
    return {std::move(readable), std::move(object)};
  }

  const std::vector<BYTE>& data_;
  std::wstring chars_;
  std::vector<std::string> remarks_;
};

constexpr std::string_view kDigits = "0123456789abcdef";

std::string hexText(const std::vector<BYTE>& data) {
  std::string text;
  for (const BYTE byte : data) {
    text += kDigits[byte >> 4];
    text += kDigits[byte & 0xF];
  }
  return text;
}

// Integers are stored with the low byte first, on both targets.
template <class Number>
Number numberOf(const std::vector<BYTE>& data) {
  Number number = 0;
  std::memcpy(&number, data.data(), std::min(data.size(), sizeof number));
  return number;
}

std::vector<BYTE> bytesOf(const void* data, std::size_t size) {
  const auto* const raw = static_cast<const BYTE*>(data);
  return {raw, raw + size};
}

Encoded encodedHex(std::string_view text) {
  Encoded result{};
  for (std::size_t at = 0; at < text.size(); at += 2) {
    const std::optional<std::uint8_t> byte = numberFromText<std::uint8_t>("0x" + std::string(text.substr(at, 2)));
    if (!byte || at + 1 == text.size()) {
      return {{}, "no pairs of hex digits"};
    }
    result.data.push_back(*byte);
  }
  return result;
}

const Type* findType(DWORD number) {
  const auto* const found =
      std::find_if(std::begin(kTypes), std::end(kTypes), [&](const Type& type) { return type.number == number; });
  return found != std::end(kTypes) ? found : nullptr;
}

bool isReadable(DWORD type) {
  const Type* const known = findType(type);
  return known != nullptr && known->readable;
}

std::vector<std::string> words(bool readableOnly) {
  std::vector<std::string> list;
  for (const Type& type : kTypes) {
    if (type.readable || !readableOnly) {
      list.emplace_back(type.word);
    }
  }
  return list;
}

}  // namespace

std::string nameOfType(DWORD type) {
  const Type* const known = findType(type);
  return known != nullptr ? known->name : "type " + std::to_string(type);
}

std::vector<std::string> readableTypes() {
  return words(true);
}

std::vector<std::string> knownTypes() {
  return words(false);
}

DWORD typeFromWord(std::string_view word) {
  return std::find_if(std::begin(kTypes), std::end(kTypes), [&](const Type& one) { return one.word == word; })->number;
}

RegistryValue readValue(const RegistryKey& key, const std::string& name, std::optional<DWORD> type) {
  const std::wstring wideName = toWide(name);
  RegistryValue value{};
  const auto probe = [&] {
    DWORD stored = 0;
    DWORD bytes = 0;
    const int result =
        vlRegReadValueEx(key.root, key.path.c_str(), wideName.c_str(), &stored, nullptr, &bytes, key.section);
    value.type = result == kRegistryDone ? std::optional(stored) : std::nullopt;
    return result;
  };
  if (type) {
    value.result = readTyped(key, wideName.c_str(), *type, &value.data);
    value.type = type;
    if (value.result != kRegistryDone) {
      probe();
    }
    return value;
  }
  // The type too may change between two calls.
  for (int tries = 0; tries < kMostTries; ++tries) {
    value.result = probe();
    if (value.result != kRegistryDone) {
      return value;
    }
    // The generic read refuses this type. The one for strings does so with the data in its buffer.
    const bool expand = value.type == REG_EXPAND_SZ;
    value.result = expand ? readTyped(key, wideName.c_str(), REG_SZ, &value.data)
                          : readGeneric(key, wideName.c_str(), *value.type, &value.data);
    if (value.result != kRegistryOtherType || !isReadable(*value.type)) {
      return value;
    }
  }
  return value;
}

ShownValue shownValue(DWORD type, const std::vector<BYTE>& data) {
  switch (type) {
    case REG_DWORD: {
      const auto number = numberOf<std::uint32_t>(data);
      return {std::to_string(number), Json::object({{"number", number}})};
    }
    case REG_QWORD: {
      // It may have more digits than some readers of JSON keep of a number.
      const std::string number = std::to_string(numberOf<std::uint64_t>(data));
      return {number, Json::object({{"number", number}})};
    }
    case REG_SZ:
    case REG_EXPAND_SZ:
      return Shower(data).string();
    case REG_MULTI_SZ:
      return Shower(data).strings();
    default: {
      const std::string hex = hexText(data);
      return {hex.empty() ? "empty" : hex, Json::object({{"hex", hex}})};
    }
  }
}

Encoded encoded(DWORD type, const std::vector<std::string>& texts) {
  if (type == REG_QWORD) {
    return {{}, "the library has no function that writes this type"};
  }
  if (type == REG_MULTI_SZ) {
    std::wstring list;
    for (const std::string& text : texts) {
      if (text.empty()) {
        return {{}, "an empty string would end the list"};
      }
      list += toWide(text) + L'\0';
    }
    list += L'\0';
    return {bytesOf(list.data(), list.size() * sizeof(wchar_t)), {}};
  }
  if (texts.size() != 1) {
    return {{}, "this type takes one value"};
  }
  if (type == REG_DWORD) {
    const std::optional<std::uint32_t> number = numberFromText<std::uint32_t>(texts[0]);
    return number ? Encoded{bytesOf(&*number, sizeof *number), {}} : Encoded{{}, "no number from 0 to 4294967295"};
  }
  if (type == REG_BINARY) {
    return encodedHex(texts[0]);
  }
  const std::wstring wide = toWide(texts[0]);
  return {bytesOf(wide.c_str(), (wide.size() + 1) * sizeof(wchar_t)), {}};
}

int writeValue(const RegistryKey& key, const std::string& name, DWORD type, const std::vector<BYTE>& data) {
  const std::wstring wideName = toWide(name);
  const auto write = [&](auto function) {
    return function(key.root, key.path.c_str(), wideName.c_str(), data.data(), static_cast<DWORD>(data.size()),
                    key.section);
  };
  switch (type) {
    case REG_SZ:
      return write(vlRegWriteStringValueEx);
    case REG_MULTI_SZ:
      return write(vlRegWriteMultiStringValueEx);
    case REG_DWORD:
      return vlRegWriteDWORDValueEx(key.root, key.path.c_str(), wideName.c_str(), numberOf<DWORD>(data), key.section);
    default:
      return write(vlRegWriteBinaryValueEx);
  }
}
