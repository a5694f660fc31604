// Hostile trees, and every platform call of every function that fails. Native only.
#include "fixture.h"

namespace installer {
namespace {

class Hostile : public InstallerTest {
 protected:
  void SetUp() override {
    InstallerTest::SetUp();
    fs::create_directories(real(kMerged));
    session->set(L"CustomActionData", path(L"Product\\"));
    makeFile(L"outside\\kept");
  }
  bool kept() const { return fs::exists(real(L"outside\\kept")); }
  // Calls with the n-th platform call failing, and gives that call's name; empty if there was none.
  std::string failing(std::uint64_t n, vlplatform::FaultSpan span, const std::function<void()>& call) {
    faults().watch();
    faults().failAny(n, span, 4321);
    call();
    const std::string name = faults().callName(n);
    faults().reset();
    expectNothingOpen();
    return name;
  }
};

TEST_F(Hostile, LinksAreRemovedAndNeverFollowed) {
  fs::create_directory_symlink(real(L"outside"), real(kMerged + L"folder"));
  fs::create_symlink(real(L"outside\\kept"), real(kMerged + L"file"));
  fs::create_symlink("nowhere", real(kMerged + L"broken"));
  fs::create_directory_symlink("..", real(kMerged + L"up"));
  EXPECT_EQ(MSICleanMergedFolders(session->handle), 0u);
  EXPECT_TRUE(kept() && fs::is_empty(real(kMerged)));
  EXPECT_EQ(marks(), (Texts{kMerged + L"folder", kMerged + L"up"}));

  const fs::path merged = real(L"Product\\Resources\\Merged");
  fs::remove(merged);
  fs::create_directory_symlink(real(L"outside"), merged);
  EXPECT_EQ(MSICleanMergedFolders(session->handle), 0u);
  EXPECT_TRUE(kept() && fs::is_symlink(merged));
  EXPECT_EQ(MSIDeleteResourceFiles(session->handle), 0u);
  EXPECT_TRUE(kept() && !fs::is_symlink(merged));
}

TEST_F(Hostile, PathsUpToTheLimitAreRemovedAndLongerOnesLeftAlone) {
  for (const std::size_t length : {258u, 259u, 260u, 261u, 300u}) {
    const std::size_t room = length - path(kMerged).size() - 2;
    const auto folder = kMerged + std::wstring(room / 2, L'd') + L'\\' + std::wstring(room - room / 2 - 1, L'e');
    makeFile(folder + L"\\f");
    ASSERT_EQ(path(folder + L"\\f").size(), length);
    makeFile(kMerged + L"z");
    EXPECT_EQ(MSICleanMergedFolders(session->handle), 0u);
    EXPECT_EQ(fs::exists(real(folder + L"\\f")), length >= 260) << length;
    EXPECT_FALSE(fs::exists(real(kMerged + L"z")));
    fs::remove_all(real(kMerged + std::wstring(room / 2, L'd')));
  }
}

TEST_F(Hostile, NamesInAnyCaseAndTheCurrentFolder) {
  fs::rename(real(L"Product\\Resources"), real(L"Product\\RESOURCES"));
  std::ofstream(real(L"Product\\RESOURCES\\Merged") / "\xC3\xBC\xE2\x82\xAC ..x") << "text";
  session->set(L"CustomActionData", L"c:/vltest\\PRODUCT\\");
  EXPECT_EQ(MSICleanMergedFolders(session->handle), 0u);
  EXPECT_TRUE(fs::is_empty(real(L"Product\\RESOURCES\\Merged")));
  fs::create_directories(root / "Resources/Merged/kept");
  session->set(L"CustomActionData", L"");
  EXPECT_EQ(MSIDeleteResourceFiles(session->handle), 0u);
  EXPECT_TRUE(fs::exists(root / "Resources/Merged/kept"));
}

TEST_F(Hostile, EveryFailingCallEndsInItsResult) {
  using vlplatform::FaultSpan;
  const std::map<std::string, DWORD> results{
      {"LoadLibraryW", 4321}, {"GetProcAddress", 4321}, {"MsiGetPropertyW", 2}, {"GetEnvironmentVariableW", 1}};
  int reached = 0;
  for (const auto action : {&MSIDeleteResourceFiles, &MSICleanMergedFolders, &MSIDeleteFile}) {
    for (const FaultSpan span : {FaultSpan::once, FaultSpan::forEver}) {
      bool variableRead = false;
      std::string failed = "none";
      for (std::uint64_t n = 1; !failed.empty(); ++n, ++reached) {
        for (const wchar_t* const file : {L"a", L"sub\\deep\\c", L"z"}) {
          makeFile(kMerged + file);
        }
        makeFile(L"Product\\Resources\\keep");
        DWORD result = 0;
        failed = failing(n, span, [&] { result = action(session->handle); });
        variableRead = variableRead || failed == "GetEnvironmentVariableW" || action == &MSIDeleteFile;
        const bool readFails = span == FaultSpan::forEver && !variableRead && !failed.empty();
        const auto known = results.find(failed);
        EXPECT_EQ(result, known != results.end() ? known->second : DWORD{readFails}) << n << ' ' << failed;
        EXPECT_TRUE(kept() && fs::exists(real(L"Product\\Resources\\keep")));
        EXPECT_TRUE(!failed.empty() || action == &MSIDeleteFile || !fs::exists(real(kMerged + L"sub")));
      }
    }
  }
  EXPECT_GT(reached, 100);
}

TEST_F(Hostile, EveryFailingCallOfTheDetectionIsAnAnswer) {
  Key::create(L"SYSTEM\\CurrentControlSet\\Control\\Terminal Server").set(L"fDenyTSConnections", REG_DWORD, Bytes(4));
  Key::create(L"System\\CurrentControlSet\\Control\\ProductOptions")
      .set(L"ProductSuite", REG_MULTI_SZ, support::bytesOf(L"Terminal Server\0\0"sv));
  const std::map<std::string, int> answers[] = {
      {{"RegOpenKeyW", 0}, {"RegQueryValueExW", 0}, {"LocalAlloc", 0}},
      {{"GetModuleHandleW", -1}, {"VerifyVersionInfoA", 0}, {"RegOpenKeyW", -1}, {"RegQueryValueExW", -1}}};
  for (const DWORD major : {4u, 5u}) {
    machine().version().set({.major = major, .minor = 2, .suiteMask = VER_SUITE_TERMINAL});
    std::string failed = "none";
    for (std::uint64_t n = 1; !failed.empty(); ++n) {
      int answer = 77;
      failed = failing(n, vlplatform::FaultSpan::once, [&] { answer = IsTerminalServicesEnabled(); });
      const auto known = answers[major - 4].find(failed == "GetProcAddress" ? "GetModuleHandleW" : failed);
      EXPECT_EQ(answer, known != answers[major - 4].end() ? known->second : 1) << n << ' ' << failed;
    }
  }
  // The property stays as it was where the library or its function is missing.
  for (const char* const function : {"LoadLibraryW", "GetProcAddress"}) {
    faults().watch();
    faults().fail(function, function[0] == 'L' ? 1 : 3);
    EXPECT_EQ(DetectTSE(session->handle), 1);
    EXPECT_EQ(session->get(L"TSE_ENABLED"), L"");
  }
}

}  // namespace
}  // namespace installer
