// Hostile trees, and every platform call of every action that fails. Native only.
#include "fixture.h"

namespace installer {
namespace {

const std::wstring kMerged = L"Product\\Resources\\Merged\\";

class Hostile : public InstallerTest {
 protected:
  void SetUp() override {
    InstallerTest::SetUp();
    fs::create_directories(real(kMerged));
    session->set(L"CustomActionData", path(L"Product\\"));
    makeFile(L"outside\\kept");
  }
  bool kept() const { return fs::exists(real(L"outside\\kept")); }
};

TEST_F(Hostile, LinksAreRemovedAndNeverFollowed) {
  fs::create_directory_symlink(real(L"outside"), real(kMerged + L"folder"));
  fs::create_symlink(real(L"outside\\kept"), real(kMerged + L"file"));
  fs::create_symlink("nowhere", real(kMerged + L"broken"));
  fs::create_directory_symlink("..", real(kMerged + L"up"));
  EXPECT_EQ(MSICleanMergedFolders(session->handle()), 0u);
  EXPECT_TRUE(kept() && fs::is_empty(real(kMerged)));
  EXPECT_EQ(marks(), (Texts{kMerged + L"folder", kMerged + L"up"}));
}

TEST_F(Hostile, AMergedFolderThatIsALinkIsNotFollowedEither) {
  const std::wstring merged = L"Product\\Resources\\Merged";
  fs::remove(real(merged));
  fs::create_directory_symlink(real(L"outside"), real(merged));
  EXPECT_EQ(MSICleanMergedFolders(session->handle()), 0u);
  EXPECT_TRUE(kept() && fs::is_symlink(real(merged)));
  EXPECT_EQ(MSIDeleteResourceFiles(session->handle()), 0u);
  EXPECT_TRUE(kept() && !fs::is_symlink(real(merged)));
}

// One file below folders of such a length that the path of the file has `length` characters.
TEST_F(Hostile, PathsUpToTheLimitAreRemovedAndLongerOnesLeftAlone) {
  for (const std::size_t length : {258u, 259u, 260u, 261u, 300u}) {
    SCOPED_TRACE(length);
    const std::size_t room = length - path(kMerged).size() - 2;
    const std::wstring folder =
        kMerged + std::wstring(room / 2, L'd') + L'\\' + std::wstring(room - room / 2 - 1, L'e');
    makeFile(folder + L"\\ff");
    ASSERT_EQ(path(folder + L"\\ff").size(), length);
    makeFile(kMerged + L"z");
    EXPECT_EQ(MSICleanMergedFolders(session->handle()), 0u);
    EXPECT_EQ(fs::exists(real(folder + L"\\ff")), length >= 260);
    EXPECT_FALSE(fs::exists(real(kMerged + L"z")));
    fs::remove_all(real(kMerged));
    fs::create_directories(real(kMerged));
  }
}

TEST_F(Hostile, NamesInAnyCaseAndAnyScript) {
  fs::rename(real(L"Product\\Resources"), real(L"Product\\RESOURCES"));
  makeFile(L"Product\\RESOURCES\\Merged\\\x00FC\x20AC\x1D11E ..x");
  session->set(L"CustomActionData", L"c:/vltest\\PRODUCT\\");
  EXPECT_EQ(MSICleanMergedFolders(session->handle()), 0u);
  EXPECT_TRUE(fs::is_empty(real(L"Product\\RESOURCES\\Merged")));
}

TEST_F(Hostile, AnEmptyPropertyIsNotTheCurrentFolder) {
  const fs::path file = machine().files().root() / "Resources" / "Merged" / "kept";
  fs::create_directories(file.parent_path());
  std::ofstream(file) << "text";
  session->set(L"CustomActionData", L"");
  EXPECT_EQ(MSIDeleteResourceFiles(session->handle()), 0u);
  EXPECT_TRUE(fs::exists(file));
}

TEST_F(Hostile, EveryFailingCallEndsInItsResult) {
  const std::map<std::string, DWORD> results{
      {"LoadLibraryW", 4321}, {"GetProcAddress", 4321}, {"MsiGetPropertyW", 2}, {"GetEnvironmentVariableW", 1}};
  int reached = 0;
  for (const auto action : {&MSIDeleteResourceFiles, &MSICleanMergedFolders, &MSIDeleteFile}) {
    for (const auto span : {vlplatform::FaultSpan::once, vlplatform::FaultSpan::forEver}) {
      std::string failed = "none";
      for (std::uint64_t n = 1; !failed.empty(); ++n) {
        for (const wchar_t* const file : {L"a", L"sub\\b", L"sub\\deep\\c", L"z"}) {
          makeFile(kMerged + file);
        }
        makeFile(L"Product\\Resources\\keep");
        faults().watch();
        faults().failAny(n, span, 4321);
        const DWORD result = action(session->handle());
        failed = faults().callName(n);
        faults().reset();
        SCOPED_TRACE(testing::Message() << "call " << n << " " << failed);
        DWORD expected = results.contains(failed) ? results.at(failed) : 0;
        if (span == vlplatform::FaultSpan::forEver && expected == 0 && action != &MSIDeleteFile) {
          expected = result <= 1 ? result : 0;  // whether the variable was read before
        }
        EXPECT_EQ(result, expected);
        EXPECT_TRUE(kept() && fs::exists(real(L"Product\\Resources\\keep")));
        if (failed.empty()) {
          EXPECT_EQ(fs::exists(real(kMerged + L"sub\\deep\\c")), action == &MSIDeleteFile);
        }
        expectNothingOpen();
        reached += !failed.empty();
      }
    }
  }
  RecordProperty("faults", reached);
  EXPECT_GT(reached, 100);
}

TEST_F(Hostile, EveryFailingCallOfTheDetectionIsAnAnswer) {
  machine().version().set({.major = 5, .minor = 2, .suiteMask = VER_SUITE_TERMINAL});
  support::Key::create(L"SYSTEM\\CurrentControlSet\\Control\\Terminal Server")
      .set(L"fDenyTSConnections", REG_DWORD, {0, 0, 0, 0});
  support::Key::create(L"System\\CurrentControlSet\\Control\\ProductOptions")
      .set(L"ProductSuite", REG_MULTI_SZ, support::bytesOf(std::wstring_view(L"Terminal Server\0\0", 17)));
  const std::map<std::string, int> answers{
      {"GetModuleHandleW", -1}, {"VerifyVersionInfoA", 0}, {"RegOpenKeyW", -1}, {"RegQueryValueExW", -1}};
  for (const DWORD major : {4u, 5u}) {
    machine().version().setNumbers(major, 2);
    std::string failed = "none";
    for (std::uint64_t n = 1; !failed.empty(); ++n) {
      faults().watch();
      faults().failAny(n);
      const int answer = DetectTSE(session->handle());
      failed = faults().callName(n);
      faults().reset();
      SCOPED_TRACE(testing::Message() << "call " << n << " " << failed);
      int expected = answers.contains(failed) ? answers.at(failed) : 1;
      expected = major == 4 && (expected == -1 || failed == "LocalAlloc") ? 0 : expected;
      expected = failed == "GetProcAddress" && n < 7 && major == 5 ? -1 : expected;
      EXPECT_EQ(answer, expected);
      expectNothingOpen();
    }
  }
}

}  // namespace
}  // namespace installer
