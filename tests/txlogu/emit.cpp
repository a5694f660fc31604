/// Logs as a library would; the tests look at what arrives.
#include <txlogu/txlogu.h>

#include <cerrno>
#include <map>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

struct LogsAtTheEnd {
  ~LogsAtTheEnd() {
    if (active) txlogLog(L"t", TXLOG_NOTE, L"late");
  }
  bool active = false;
} logsAtTheEnd;

void emitLevels() {
  for (const int level : {TXLOG_NOTE, TXLOG_ERROR, TXLOG_TRACE, TXLOG_ENTRY, TXLOG_EXIT}) {
    txlogLog(L"A", level, L"text");
    txlogLog(L"B", level, L"text");
  }
  txlogLog(L"A", 5, L"text");
  txlogLogBin(L"A", -7, "\x01\xAB", 2, L"label");
}

void emitTexts() {
  txlogLog(L"t\n2 [x] \\", TXLOG_ERROR, L"%s", L"a\n2026-01-01T00:00:00.000Z 1 1 error t forged\r\t\x1b[2J\x7f\\n");
  txlogLog(L"t", TXLOG_ERROR, L"\x85|\u2028|\u2029|\u202e|\u2066|\x9b|\u00e4\u4e2d\U0001F600");
  const wchar_t lone[] = {L'<', static_cast<wchar_t>(0xD800), L'-', static_cast<wchar_t>(0xDC00), L'>', 0};
  txlogLog(L"t", TXLOG_ERROR, L"%s", lone);
  txlogLog(std::wstring(TXLOG_MAX_TAG + 1, L'T').c_str(), TXLOG_ERROR, L"%s",
           std::wstring(TXLOG_MAX_TEXT + 1, L'\u2028').c_str());
}

void emitData() {
  const std::string bytes(TXLOG_MAX_DATA + 3, '\x5A');
  txlogLogBin(L"t", TXLOG_TRACE, "\x00\xFF\n", 3, L"l\\[9 bytes]\n");
  txlogLogBin(L"t", TXLOG_TRACE, "", 0, L"none");
  txlogLogBin(L"t", TXLOG_TRACE, nullptr, 4, L"null");
  txlogLogBin(L"t", TXLOG_TRACE, "abc", -4, L"negative");
  txlogLogBin(L"t", TXLOG_TRACE, bytes.data(), static_cast<int>(bytes.size()), L"long");
}

void emitFromThreads() {
  const std::wstring filler(200, L'\u00e4');
  std::vector<std::jthread> running;
  for (int thread = 0; thread < 3; ++thread) {
    running.emplace_back([thread, &filler] {
      for (int record = 0; record < 300; ++record) {
        txlogLog(L"t", TXLOG_TRACE, L"<%d %d %s>", thread, record, filler.c_str());
      }
    });
  }
}

const std::map<std::string_view, void (*)()> kRoles = {{"levels", emitLevels},
                                                       {"texts", emitTexts},
                                                       {"data", emitData},
                                                       {"late", [] { logsAtTheEnd.active = true; }},
                                                       {"threads", emitFromThreads}};

}  // namespace

int main(int argc, char** argv) {
  errno = EDOM;
  kRoles.at(argc > 1 ? argv[1] : "")();
  return errno == EDOM ? 0 : 3;
}
