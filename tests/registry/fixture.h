// What the log of the family must be.
#ifndef REGISTRY_FIXTURE_H
#define REGISTRY_FIXTURE_H

#include <functional>
#include <sstream>

#include <support/guardedbuffer.h>
#include <support/registrytest.h>
#include <vlhostkit/vlhostkit.h>

namespace registry {

using namespace std::string_view_literals;
using support::Bytes;
using support::bytesOf;
using support::Key;
using Lines = std::vector<std::pair<int, std::wstring>>;

inline const HKEY kRoot = HKEY_LOCAL_MACHINE;
inline constexpr const wchar_t* kMissing = L"SOFTWARE\\VelorinTest\\Missing";
inline constexpr DWORD kSections[] = {0, KEY_WOW64_64KEY, KEY_WOW64_32KEY};

inline std::wstring hex(DWORD number) {
  std::wostringstream out;
  out << L"0x" << std::hex << number;
  return out.str();
}

class RegistryTest : public support::RegistryTest {
 protected:
  // The lines of a function with an entry and an exit, and what lies between.
  static Lines framed(const std::wstring& function, int result, const Lines& inner) {
    Lines lines{{TXLOG_ENTRY, function}};
    lines.insert(lines.end(), inner.begin(), inner.end());
    lines.emplace_back(TXLOG_EXIT, function + L" : ret=(" + std::to_wstring(result) + L")");
    return lines;
  }
  // Takes the log, which must be these lines; `data` is that of the one binary record, if any.
  testing::AssertionResult logged(const Lines& lines, const Bytes& data = {}) {
    std::vector<support::LogRecord> expected;
    for (const auto& [level, text] : lines) {
      const bool binary = text == L"vlRegReadBinaryValueEx : RegQueryValueEx returns";
      expected.push_back({L"VLHOSTKIT", level, text, binary ? data : Bytes()});
    }
    return log.was(expected);
  }
  // Takes the log, which must be a call with one line between entry and exit.
  testing::AssertionResult tracedOnce(const std::wstring& function, int result, const std::wstring& rest) {
    return logged(framed(function, result, {{TXLOG_TRACE, function + rest}}));
  }
  // `call` is made with all arguments null but the section.
  void expectSectionTestedFirst(const std::wstring& function, const std::function<int(DWORD section)>& call) {
    for (const DWORD section : {1u, 0x300u, 0x80000000u, 0xFFFFFFFFu}) {
      EXPECT_EQ(call(section), -3);
      const std::wstring line = function + L" : Desired registry section incorrect (" + hex(section) + L")";
      EXPECT_TRUE(logged(framed(function, -3, {{TXLOG_ERROR, line}})));
    }
  }
};

}  // namespace registry

#endif
