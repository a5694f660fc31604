#include <cstddef>
#include <cstdlib>
#include <cwchar>
#include <memory>

#include <vlhostkit/timetext.h>

#include "frame/callframe.h"
#include "frame/handle.h"
#include "timetext/sections.h"

namespace {

// Both are asked for every character; the range test first lets the regular ones pass with one comparison.
constexpr bool endsDate(wchar_t c) {
  const bool between = static_cast<unsigned>(c) - L'!' < unsigned{L'T' - L'!'};
  return !between && (c == L'T' || c == L' ' || c == L'\0');
}
constexpr bool endsTime(wchar_t c) {
  const bool between = static_cast<unsigned>(c) - L'.' < unsigned{L'Z' - L'.'};
  return !between && (c == L'+' || c == L'-' || c == L'Z' || c == L'\0');
}

// Where the sections of a text lie. Positions are those of the separator and of the zone's marker, or the text's
// length where there is none.
struct Layout {
  std::size_t dateEnd;
  std::size_t timeEnd;
  std::size_t length;

  explicit Layout(LPCWSTR text) {
    LPCWSTR next = text;
    while (!endsDate(*next)) {
      ++next;
    }
    dateEnd = static_cast<std::size_t>(next - text);
    if (*next != L'\0') {
      do {
        ++next;
      } while (!endsTime(*next));
    }
    timeEnd = static_cast<std::size_t>(next - text);
    while (*next != L'\0') {
      ++next;
    }
    length = static_cast<std::size_t>(next - text);
  }

  bool hasTime() const { return dateEnd < length; }
  bool hasZone() const { return timeEnd < length; }
  bool hasOffset() const { return timeEnd + 1 < length; }
};

struct Free {
  void operator()(void* block) const { std::free(block); }
};

// Gives `parse` a terminated copy of the section. By malloc: the copies are half of what a conversion costs, and
// operator new without exceptions takes twice as long.
template <class Parse>
DWORD parseCopy(LPCWSTR begin, std::size_t chars, Parse parse) {
  const std::unique_ptr<wchar_t, Free> copy(static_cast<wchar_t*>(std::malloc((chars + 1) * sizeof(wchar_t))));
  if (!copy) {
    return ERROR_NOT_ENOUGH_MEMORY;
  }
  if (memcpy_s(copy.get(), (chars + 1) * sizeof(wchar_t), begin, chars * sizeof(wchar_t)) != 0) {
    return ERROR_CANNOT_COPY;
  }
  copy.get()[chars] = L'\0';
  return parse(copy.get());
}

DWORD localToUtc(SYSTEMTIME* time) {
  FILETIME local;
  FILETIME utc;
  return SystemTimeToFileTime(time, &local) && LocalFileTimeToFileTime(&local, &utc) && FileTimeToSystemTime(&utc, time)
             ? ERROR_SUCCESS
             : GetLastError();
}

// The platform's function is looked up at each use: the oldest systems that load the library do not have it.
DWORD zoneToUtc(const TIME_ZONE_INFORMATION& zone, SYSTEMTIME* time) {
  const vl::Module kernel(LoadLibraryW(L"kernel32.dll"));
  if (!kernel) {
    txlogLog(vl::kTag, TXLOG_ERROR, L"vlSysISO8601ToSystemTime : LoadLibrary(kernel32.dll) failed");
    return GetLastError();
  }
  using Convert = BOOL(WINAPI*)(const TIME_ZONE_INFORMATION*, const SYSTEMTIME*, SYSTEMTIME*);
  const auto convert = vl::entryPoint<Convert>(kernel, "TzSpecificLocalTimeToSystemTime");
  if (convert == nullptr) {
    txlogLog(vl::kTag, TXLOG_ERROR,
             L"vlSysISO8601ToSystemTime GetProcAddress TzSpecificLocalTimeToSystemTime() Failed");
    return GetLastError();
  }
  SYSTEMTIME utc;
  if (!convert(&zone, time, &utc)) {
    return GetLastError();
  }
  *time = utc;
  return ERROR_SUCCESS;
}

DWORD toSystemTime(LPCWSTR text, SYSTEMTIME* time) {
  *time = SYSTEMTIME{};
  const Layout layout(text);

  DWORD result = parseCopy(text, layout.dateEnd, [&](LPCWSTR date) { return vlSysParseISO8601Date(date, time); });
  if (result == ERROR_SUCCESS && layout.hasTime()) {
    const std::size_t begin = layout.dateEnd + 1;
    result = parseCopy(text + begin, layout.timeEnd - begin,
                       [&](LPCWSTR section) { return vlSysParseISO8601Time(section, time); });
  }
  if (result != ERROR_SUCCESS) {
    return result;
  }
  if (!layout.hasZone()) {
    return localToUtc(time);
  }
  if (!layout.hasOffset()) {
    return ERROR_SUCCESS;
  }
  const std::size_t begin = layout.timeEnd + 1;
  const bool positive = text[layout.timeEnd] != L'-';
  TIME_ZONE_INFORMATION zone;
  result = parseCopy(text + begin, layout.length - begin,
                     [&](LPCWSTR offset) { return vlSysParseISO8601TimeZone(offset, time, positive, &zone); });
  return result == ERROR_SUCCESS ? zoneToUtc(zone, time) : result;
}

}  // namespace

DWORD vlSysISO8601ToSystemTime(LPCWSTR text, SYSTEMTIME* time) {
  DWORD result = ERROR_INVALID_PARAMETER;
  const vl::CallFrame frame(vl::kTag, L"vlSysISO8601ToSystemTime",
                            vl::ExitWith(L"vlSysISO8601ToSystemTime (%d)", result));
  if (text != nullptr && time != nullptr) {
    result = toSystemTime(text, time);
  }
  return result;
}

DWORD vlSysISO8601ToLargeInteger(LPCWSTR text, LARGE_INTEGER* value) {
  DWORD result = ERROR_INVALID_PARAMETER;
  const vl::CallFrame frame(vl::kTag, L"vlSysISO8601ToLargeInteger",
                            vl::ExitWith(L"vlSysISO8601ToLargeInteger (%d)", result));
  if (text == nullptr || value == nullptr) {
    return result;
  }
  SYSTEMTIME time;
  result = vlSysISO8601ToSystemTime(text, &time);
  if (result == ERROR_SUCCESS) {
    FILETIME ticks;
    if (SystemTimeToFileTime(&time, &ticks)) {
      value->u.LowPart = ticks.dwLowDateTime;
      value->u.HighPart = static_cast<LONG>(ticks.dwHighDateTime);
    } else {
      result = GetLastError();
    }
  }
  return result;
}
