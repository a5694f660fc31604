// Registry text and the files that hold it.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include <support/machinetest.h>

#include "registrydump.h"

namespace {

class RegFile : public support::MachineTest {
 protected:
  vlplatform::Registry& registry = machine().registry();
  const std::filesystem::path folder =
      std::filesystem::path(testing::TempDir()) / ("vlregfile" + std::to_string(getpid()));
  const std::string file = (folder / "r.reg").string();
  void SetUp() override {
    MachineTest::SetUp();
    faults().reset();
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
  }
  void TearDown() override {
    unsetenv("VLPLATFORM_REGISTRY");
    std::filesystem::remove_all(folder);
    MachineTest::TearDown();
  }
  static LSTATUS set(const std::wstring& name, DWORD type, const std::vector<BYTE>& data) {
    HKEY key = nullptr;
    LSTATUS code = RegCreateKeyExW(HKEY_USERS, L"K", 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr);
    if (code == 0) {
      code = RegSetValueExW(key, name.c_str(), 0, type, data.data(), static_cast<DWORD>(data.size()));
      RegCloseKey(key);
    }
    return code;
  }
};

TEST_F(RegFile, BrokenLinesAreNamedAndChangeNothing) {
  const std::wstring before = registrydump::all();
  const auto check = [this](const std::string& text, unsigned line) {
    const auto result = registry.loadText("REGEDIT4\n[HKEY_USERS\\New]\n@=\"\"\n" + text);
    EXPECT_EQ(result.line, line) << text << ": " << result.message;
    EXPECT_FALSE(result.ok()) << text;
  };
  std::istringstream inFourthLine(
      R"("a"="b|"a"="\x"|"a"=dword:|"a"=dword:123456789|"a"=hex:1,|"a"=hex:123|"a"=hex:1,\|"a"=hex(1:00|"a"=hex(g):00|)"
      R"("a"=hex 00|"a"=text|"a" 1|text|[HKEY_USERS\x|[HKEY_USERS\x] y|[HKEY_NONE\x]|[-HKEY_USERS]|"a"="b\0"|)"
      "[-HKEY_LOCAL_MACHINE\\SOFTWARE]|\"a\"=\"b\nc\" d");
  for (std::string text; std::getline(inFourthLine, text, '|');) {
    check(text, 4);
  }
  for (const char* const text : {"\"a\"=hex:1,\\\n,2", "\n\xFF", "[-HKEY_USERS\\x]\n@=\"\""}) {
    check(text, 5);
  }
  EXPECT_EQ(registry.loadText("@=\"\"").line, 1u);
  EXPECT_EQ(registrydump::all(), before);
}

TEST_F(RegFile, RandomRegistriesComeBack) {
  std::mt19937 random(7);
  for (int i = 0; i < 400; ++i) {
    std::vector<BYTE> data(random() % 50);
    for (std::size_t at = 0; at < data.size(); ++at) {
      // Every other one has characters up to U+1FFFF, surrogates among them.
      data[at] = static_cast<BYTE>(i % 2 == 0 && at % 4 > 1 ? (at % 4 == 2 ? random() % 2 : 0) : random());
    }
    ASSERT_EQ(set(L"n\"\\\r\n" + std::to_wstring(i), random() % 12, data), 0);
  }
  const std::wstring before = registrydump::all();
  ASSERT_TRUE(registry.save(file).ok());
  registry.reset();
  ASSERT_TRUE(registry.load(file).ok());
  EXPECT_EQ(registrydump::all(), before);
}

TEST_F(RegFile, NamedFileOutlivesTheProcessAndAFailedSave) {
  setenv("VLPLATFORM_REGISTRY", file.c_str(), 1);
  registry.reset();
  ASSERT_EQ(set(L"v", REG_SZ, {'x', 0, 0, 0, 0, 0, 0, 0}), 0);
  const std::wstring before = registrydump::all();
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit old{};
  getrlimit(RLIMIT_FSIZE, &old);
  const rlimit small{64, old.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  EXPECT_EQ(set(L"w", REG_NONE, {}), 1016);
  setrlimit(RLIMIT_FSIZE, &old);
  registry.reset();
  EXPECT_EQ(registrydump::all(), before);
  EXPECT_FALSE(registry.save(folder.string()).ok());
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1);  // no temporary file stays
  std::ofstream(file) << "REGEDIT4\n[x";
  registry.reset();
  EXPECT_EQ(set(L"v", REG_NONE, {}), 1009);
  EXPECT_EQ(std::filesystem::file_size(file), 11u);
}

}  // namespace
