// Toasts, automation's blocks, secret text and the secure dialog; and the bench that all rows share.
#include <securetext/members.h>

#include "bench.h"

namespace torture {

using namespace std::string_view_literals;
using support::bytesOf, support::Key;

void Bench::prepare() {
  machine().reset();
  machine().files().setRoot(root);
  session.emplace();
  session->set(L"CustomActionData", installer::kProduct);
  SetEnvironmentVariableW(L"CommonProgramFiles", path(L"Common").c_str());
  SetEnvironmentVariableW(L"SystemDrive", L"C:");
  machine().drives().clear();
  machine().drives().set(L'C', DRIVE_FIXED);
  machine().clock().setTicks(130'000'000'000'000'000);
  machine().version().setNumbers(10, 0);
  machine().strings().set(nullptr, IDS_LONG, L"a text that is longer than what the string has room for at first");
  machine().modules().add(toast::kSibling, {{"CreateToastNotification", toast::address(&toast::createFake)},
                                            {"GetUIMode", toast::address(+[] { return HOSTKIT_UI_MODE_TABLET; })}});
  accounts::describeUser();
  const Key key = Key::create(L"SOFTWARE\\VelorinTest");
  key.set(L"d", REG_DWORD, {1, 0, 0, 0});
  key.set(L"s", REG_SZ, bytesOf(L"s\0"sv));
  key.set(L"m", REG_MULTI_SZ, bytesOf(L"m\0\0"sv));
  key.set(L"b", REG_BINARY, {1});
  Key::create(L"SOFTWARE\\VelorinTest\\a\\b");
  Key::create(L"SOFTWARE\\VelorinTest\\c");
  const std::wstring control = L"System\\CurrentControlSet\\Control\\";
  Key::create(control + L"ProductOptions").set(L"ProductSuite", REG_MULTI_SZ, accounts::terminated(L"Terminal Server"));
  Key::create(control + L"Terminal Server").set(L"fDenyTSConnections", REG_DWORD, {0, 0, 0, 0});
  dialog::describeDialogs();
  // A message that was not posted, or not handled, leaves a dialog waiting: someone closes it.
  machine().windows().setUser([](HWND window) {
    faults().forgetPlans();
    ::EndDialog(window, IDCANCEL);
  });
  first.refill();
  second.refill();
  std::fill_n(first.data(), sizeof(wchar_t), BYTE{});  // the search for drives begins with the text that is there
  size = 1024;
  otherSize = 64;
  count = 9;
  texts<char>() = {"before", "before"};
  texts<wchar_t>() = {L"before", L"before"};
  SAFEARRAYBOUND bound{5, 0};
  OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token);
  array = SafeArrayCreate(VT_UI1, 1, &bound);
  string = SysAllocString(L"text");
  wide.emplace(L"secret");
  narrow.emplace("secret");
  list.emplace();
  dialog.emplace();
  toast::fake->displaying.reset();
  makeManager();
}

Parts Bench::parts(const std::string& seen) const {
  EXPECT_TRUE(first.guardsIntact() && second.guardsIntact());
  const auto raw = [](const auto& buffer) { return std::string(buffer.data(), buffer.data() + buffer.size()); };
  std::string strings, listed, secret;
  for (const auto& text : std::get<0>(texts_)) {
    strings += text + '|';
  }
  for (const auto& text : std::get<1>(texts_)) {
    strings.append(text.begin(), text.end());
  }
  for (__POSITION* at = list->GetHeadPosition(); at != nullptr;) {
    const auto text = securetext::textOf(list->GetNext(at));
    listed.append(text.begin(), text.end());
  }
  for (const wchar_t character : securetext::textOf(*wide)) {
    secret += static_cast<char>(character);
  }
  EXPECT_EQ(dialog->m_hWnd, nullptr);
  const auto* const bytes = static_cast<const char*>(sid);
  return {raw(first),
          raw(second),
          std::to_string(size) + ' ' + std::to_string(otherSize) + ' ' + std::to_string(count),
          strings,
          seen + listed + std::string(bytes, bytes == nullptr ? 0 : GetLengthSid(sid)),
          secret,
          securetext::textOf(*narrow)};
}

void Bench::release() {
  for (auto* const text : {&*wide, &dialog->password}) {  // whatever comes of it, it is a string like others
    text->Append(L"x", 1);
    EXPECT_TRUE(securetext::textOf(*text).ends_with(L'x'));
  }
  while (!managers.empty()) {
    deleteManager();
  }
  EXPECT_EQ(toast::fake->alive, 0);
  isOnHeap ? void(HeapFree(GetProcessHeap(), 0, sid)) : std::free(sid);
  sid = nullptr;
  CloseHandle(std::exchange(token, nullptr));
  SafeArrayUnaccessData(array);  // which may have failed
  SafeArrayDestroy(array);
  SysFreeString(string);
  dialog.reset();
  list.reset();
  narrow.reset();
  wide.reset();
}

namespace {

std::vector<Row> toastRows() {
  static const Promise kNone{.failures = {0}, .throws = true};
  const auto* const finds = "LoadLibrary GetProcAddress";
  return {{"vlCreateToastManager",
           &kNone,
           finds,
           L"$",
           [](Bench& io) { return io.makeManager() != nullptr; },
           {},
           [](Bench& io) { io.deleteManager(); }},
          {"vlDeleteToastManager", &kNone, "", L"$", [](Bench& io) { return io.deleteManager(); }},
          {"vlGetUIMode", &kNone, finds, L"$", [](Bench&) { return VL::Framework::vlGetUIMode(); }},
          {"vlIsWinRTSupported", &kNone, "GetVersionEx", L"$: returns %b.",
           [](Bench&) { return VL::Framework::vlIsWinRTSupported(); }},
          {"ITXToastManager Show", &kNone, "", L"returns %d", [](Bench& io) { return io.managers[0]->ShowToast(); }},
          {"ITXToastManager Hide",
           &kNone,
           "",
           L"returns %d",
           [](Bench& io) { return io.managers[0]->HideToast(); },
           {},
           [](Bench&) { toast::fake->displaying = true; }},
          {"ITXToastManager CreateToastThread JoinToastThread", &kNone, "", L"returns %d",
           [](Bench& io) { return io.managers[0]->CreateToastThread() && io.managers[0]->JoinToastThread(); }}};
}

std::vector<Row> releaseRows() {
  static const Promise kAlive{.failures = {E_FAIL}};
  std::vector<Row> rows;
  for (const BOOL keep : {FALSE, TRUE}) {
    const std::string accesses = "SafeArrayAccessData SafeArrayUnaccessData", suffix = keep ? " keep" : "";
    rows.push_back({"vlSafeArrayDestroy" + suffix, &kAlive, accesses + (keep ? "" : " SafeArrayDestroy"), L"$ hr = %x",
                    [=](Bench& io) {
                      const HRESULT result = vlSafeArrayDestroy(io.array, keep);
                      io.array = result == S_OK && !keep ? nullptr : io.array;
                      return result;
                    }});
    rows.push_back({"vlSysFreeString" + suffix, &kAlive, "", L"$", [=](Bench& io) {
                      vlSysFreeString(io.string, keep);
                      io.string = keep ? io.string : nullptr;
                      return 0;
                    }});
  }
  return rows;
}

// The members of a class; in place, where there is room for all.
template <class Members, class Object>
void addMembers(std::vector<Row>& rows, const std::string& type, const Members& members,
                std::optional<Object> Bench::*object, std::function<void(Bench&)> makeRoom = {}) {
  static const Promise kSame{.failures = {}, .varying = kSecret, .throws = true, .thrown = securetext::kInvalid};
  static const Promise kLost{
      .failures = {}, .varying = kSecret, .throws = true, .thrown = securetext::kInvalid, .emptied = true};
  for (const auto& member : members) {
    const bool lost = member.left == securetext::Left::sameOrEmpty || !makeRoom;
    const bool formats = std::string_view(member.name).starts_with("Format");
    rows.push_back({type + ' ' + member.name + (makeRoom ? " in place" : ""),
                    lost ? &kLost : &kSame,
                    formats ? "_vscwprintf" : "",
                    L"",
                    [=, call = member.call](Bench& io) { return call(*(io.*object)), 0; },
                    {},
                    makeRoom});
  }
}

}  // namespace

std::vector<Row> classRows() {
  static const Promise kEnded{
      .failures = {-1, IDCANCEL, 99 /* no press of OK */}, .throws = true, .thrown = securetext::kArgument};
  std::vector<Row> rows = toastRows();
  const auto room = [](auto& text) {
    text.GetBuffer(400);
    text.ReleaseBuffer(-1);
  };
  addMembers(rows, "CSecStr", securetext::kWideMembers, &Bench::wide);
  addMembers(rows, "CSecStr", securetext::kWideMembers, &Bench::wide, [=](Bench& io) { room(*io.wide); });
  addMembers(rows, "CSecStrA", securetext::kNarrowMembers, &Bench::narrow);
  addMembers(rows, "CSecStrA", securetext::kNarrowMembers, &Bench::narrow, [=](Bench& io) { room(*io.narrow); });
  // At 10 entries the next one needs a block of nodes.
  for (const int entries : {1, 10}) {
    addMembers(rows, "CSecStrList", securetext::kListMembers, &Bench::list, [=](Bench& io) {
      for (int i = 0; i < entries; ++i) {
        io.list->AddTail(L"secret");
      }
    });
  }
  rows.push_back({"CSecureDialog DoModal", &kEnded,
                  "DialogBoxParam SetWindowLongPtr GetWindowLongPtr GetDlgItem PostMessage SendMessage EndDialog", L"",
                  [](Bench& io) { return io.dialog->DoModal(); }});
  for (const Row& row : releaseRows()) {
    rows.push_back(row);
  }
  return rows;
}

}  // namespace torture
