// Hostile trees, and the generations of Terminal Services. Native only.
#include "fixture.h"

namespace installer {
namespace {

class Hostile : public InstallerTest {
 protected:
  void SetUp() override {
    InstallerTest::SetUp();
    fs::create_directories(real(kMerged));
    makeFile(L"outside\\kept");
  }
};

TEST_F(Hostile, LinksAreRemovedAndNeverFollowed) {
  fs::create_directory_symlink(real(L"outside"), real(kMerged + L"folder"));
  fs::create_symlink(real(L"outside\\kept"), real(kMerged + L"file"));
  fs::create_directory_symlink("..", real(kMerged + L"up"));
  EXPECT_EQ(run(&MSICleanMergedFolders), 0u);
  EXPECT_TRUE(there(L"outside\\kept") && fs::is_empty(real(kMerged)));
  const fs::path merged = real(L"Product\\Resources\\Merged");
  fs::remove(merged);
  fs::create_directory_symlink(real(L"outside"), merged);
  EXPECT_EQ(run(&MSICleanMergedFolders), 0u);
  EXPECT_TRUE(there(L"outside\\kept") && fs::is_symlink(merged));
  EXPECT_EQ(run(&MSIDeleteResourceFiles), 0u);
  EXPECT_TRUE(there(L"outside\\kept") && !fs::is_symlink(merged));
}

TEST_F(Hostile, PathsUpToTheLimitAreRemovedAndLongerOnesLeftAlone) {
  for (const std::size_t length : {258u, 259u, 260u, 261u, 300u}) {
    const std::size_t room = length - path(kMerged).size() - 2;
    const auto folder = kMerged + std::wstring(room / 2, L'd') + L'\\' + std::wstring(room - room / 2 - 1, L'e');
    makeFile(folder + L"\\f");
    makeFile(kMerged + L"z");
    EXPECT_EQ(run(&MSICleanMergedFolders), 0u);
    EXPECT_EQ(there(folder + L"\\f"), length >= 260) << length;
    EXPECT_FALSE(there(kMerged + L"z"));
    fs::remove_all(real(kMerged + std::wstring(room / 2, L'd')));
  }
}

TEST_F(Hostile, NamesInAnyCaseAndTheCurrentFolder) {
  std::ofstream(real(kMerged) / "\xC3\xBC\xE2\x82\xAC ..x").close();
  EXPECT_EQ(run(&MSICleanMergedFolders, L"c:/vltest\\PRODUCT\\"), 0u);
  EXPECT_TRUE(fs::is_empty(real(kMerged)));
  fs::create_directories(root / "Resources/Merged/kept");
  EXPECT_EQ(run(&MSIDeleteResourceFiles, L""), 0u);
  EXPECT_TRUE(fs::exists(root / "Resources/Merged/kept"));
}

using Stored = std::optional<std::pair<DWORD, Bytes>>;
constexpr const wchar_t* kOptions = L"System\\CurrentControlSet\\Control\\ProductOptions";
constexpr const wchar_t* kServices = L"SYSTEM\\CurrentControlSet\\Control\\Terminal Server";

const auto list = [](std::wstring_view texts) -> Stored { return std::pair{REG_MULTI_SZ, bytesOf(texts)}; };
const auto number = [](BYTE value) -> Stored { return std::pair{REG_DWORD, Bytes{value, 0, 0, 0}}; };
void store(const wchar_t* path, const wchar_t* name, const Stored& value) {
  const Key key = Key::create(path);
  RegDeleteValueW(key.get(), name);
  if (value) {
    key.set(name, value->first, value->second);
  }
}

TEST_F(Hostile, TerminalServicesOfEachGeneration) {
  const Stored none, suite = list(L"Small Business\0Terminal Server\0\0"sv);
  const struct {
    DWORD major, minor;
    int met;  // -1: the platform's test must not be asked
    Stored suite, denied;
    int answer;
  } rows[] = {
      {4, 0, -1, suite, none, 1},
      {3, 51, -1, list(L"A\0Terminal Server"sv), none, 1},
      {4, 0, -1, list(L"A\0terminal server\0\0"sv), none, 0},
      {4, 2, -1, list(L"Terminal Server 2\0Terminal\0\0"sv), number(0), 0},
      {4, 0, -1, list(L"\0Terminal Server\0\0"sv), none, 0},
      {4, 0, -1, std::pair{REG_MULTI_SZ, Bytes{'T'}}, none, 0},
      {4, 0, -1, std::pair{REG_SZ, bytesOf(L"Terminal Server\0"sv)}, none, 0},
      {5, 1, 1, none, none, 1},
      {5, 1, 0, suite, number(0), 0},
      {6, 1, 1, none, number(1), 1},
      {5, 2, 1, none, number(0), 1},
      {6, 2, 1, none, number(2), 0},
      {5, 2, 1, none, none, -1},
      {5, 2, 1, none, std::pair{REG_SZ, bytesOf(L"0\0"sv)}, -1},
      {5, 2, 1, none, std::pair{REG_DWORD, Bytes(8)}, -1},
      {5, 2, 0, none, number(0), 0},
  };
  for (const auto& row : rows) {
    const auto suites = static_cast<WORD>(row.met == 1 ? VER_SUITE_TERMINAL : VER_SUITE_ENTERPRISE);
    machine().version().set({.major = row.major, .minor = row.minor, .suiteMask = suites});
    store(kOptions, L"ProductSuite", row.suite);
    store(kServices, L"fDenyTSConnections", row.denied);
    faults().watch();
    EXPECT_EQ(DetectTSE(session->handle), row.answer) << &row - rows;
    EXPECT_EQ(session->get(L"TSE_ENABLED"), std::to_wstring(row.answer));
    EXPECT_EQ(faults().calls("VerifyVersionInfoA"), row.met == -1 ? 0u : 1u);
  }
  machine().version().set({.major = 4, .platform = VER_PLATFORM_WIN32_WINDOWS});
  EXPECT_EQ(IsTerminalServicesEnabled(), -1);
}

TEST_F(Hostile, AnAnswerThatCannotBeHandedOver) {
  store(kOptions, L"ProductSuite", list(L"Terminal Server\0\0"sv));
  machine().version().set({.major = 4});
  for (const auto& [function, n] : {std::pair{"LoadLibraryW", 1}, {"GetProcAddress", 1}}) {
    faults().watch();
    faults().fail(function, n);
    EXPECT_EQ(DetectTSE(session->handle), 1);
    EXPECT_EQ(session->get(L"TSE_ENABLED"), L"");
  }
}

}  // namespace
}  // namespace installer
