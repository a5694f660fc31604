#include "sidvalue.h"

#include <cstring>

#include "unicode.h"

namespace vlplatform {
namespace {

constexpr std::size_t kHeaderSize = offsetof(SID, SubAuthority);
constexpr std::uint64_t kMost32 = 0xFFFFFFFF;
constexpr std::uint64_t kMost48 = 0xFFFFFFFFFFFF;

unsigned digitOf(wchar_t c) {
  if (c >= L'0' && c <= L'9') {
    return static_cast<unsigned>(c - L'0');
  }
  const wchar_t lower = lowerCase(c);
  return lower >= L'a' && lower <= L'f' ? static_cast<unsigned>(lower - L'a') + 10 : 16;
}

// Takes a number off the front of `text`, decimal or hexadecimal.
std::optional<std::uint64_t> takeNumber(std::wstring_view& text, std::uint64_t most, std::uint64_t mostHexadecimal) {
  const bool hexadecimal = text.size() > 2 && text[0] == L'0' && lowerCase(text[1]) == L'x';
  const unsigned base = hexadecimal ? 16 : 10;
  text.remove_prefix(hexadecimal ? 2 : 0);
  std::uint64_t number = 0;
  std::size_t digits = 0;
  for (; digits < text.size() && digitOf(text[digits]) < base; ++digits) {
    number = number * base + digitOf(text[digits]);
    if (number > (hexadecimal ? mostHexadecimal : most)) {
      return std::nullopt;
    }
  }
  text.remove_prefix(digits);
  return digits != 0 ? std::optional(number) : std::nullopt;
}

}  // namespace

bool isValidSid(const void* sid) {
  const auto* const bytes = static_cast<const BYTE*>(sid);
  return bytes != nullptr && bytes[0] == SID_REVISION && bytes[1] <= SID_MAX_SUB_AUTHORITIES;
}

DWORD SidValue::length() const {
  return static_cast<DWORD>(kHeaderSize + subAuthorities.size() * sizeof(DWORD));
}

void SidValue::write(void* target) const {
  auto* next = static_cast<BYTE*>(target);
  *next++ = SID_REVISION;
  *next++ = static_cast<BYTE>(subAuthorities.size());
  for (int shift = 40; shift >= 0; shift -= 8) {
    *next++ = static_cast<BYTE>(authority >> shift);
  }
  for (const DWORD part : subAuthorities) {
    std::memcpy(next, &part, sizeof part);
    next += sizeof part;
  }
}

std::wstring SidValue::text() const {
  std::wstring text = L"S-1-";
  if (authority <= kMost32) {
    text += std::to_wstring(authority);
  } else {
    text += L"0x";
    for (int shift = 44; shift >= 0; shift -= 4) {
      text += L"0123456789abcdef"[authority >> shift & 0xF];
    }
  }
  for (const DWORD part : subAuthorities) {
    text += L'-';
    text += std::to_wstring(part);
  }
  return text;
}

SidValue SidValue::parent() const {
  SidValue parent = *this;
  if (!parent.subAuthorities.empty()) {
    parent.subAuthorities.pop_back();
  }
  return parent;
}

std::optional<SidValue> SidValue::ofBlock(const void* sid) {
  if (!isValidSid(sid)) {
    return std::nullopt;
  }
  const auto* const bytes = static_cast<const BYTE*>(sid);
  SidValue value;
  for (std::size_t i = 2; i < kHeaderSize; ++i) {
    value.authority = value.authority << 8 | bytes[i];
  }
  value.subAuthorities.resize(bytes[1]);
  if (bytes[1] != 0) {
    std::memcpy(value.subAuthorities.data(), bytes + kHeaderSize, bytes[1] * sizeof(DWORD));
  }
  return value;
}

std::optional<SidValue> SidValue::ofText(std::wstring_view text) {
  constexpr std::wstring_view kStart = L"S-1-";
  if (!sameName(text.substr(0, kStart.size()), kStart)) {
    return std::nullopt;
  }
  text.remove_prefix(kStart.size());
  const std::optional<std::uint64_t> authority = takeNumber(text, kMost32, kMost48);
  if (!authority) {
    return std::nullopt;
  }
  SidValue value{*authority, {}};
  while (!text.empty() && text.front() == L'-' && value.subAuthorities.size() < SID_MAX_SUB_AUTHORITIES) {
    text.remove_prefix(1);
    const std::optional<std::uint64_t> part = takeNumber(text, kMost32, kMost32);
    if (!part) {
      return std::nullopt;
    }
    value.subAuthorities.push_back(static_cast<DWORD>(*part));
  }
  return text.empty() && !value.subAuthorities.empty() ? std::optional(value) : std::nullopt;
}

}  // namespace vlplatform
