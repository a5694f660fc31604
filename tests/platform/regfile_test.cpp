// Registry text and the files that hold it.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>

#include <support/machinetest.h>

#include "registrydump.h"

namespace {

class RegFile : public support::MachineTest {
 protected:
  vlplatform::Registry& registry = machine().registry();
  const std::filesystem::path folder = std::filesystem::absolute("test-results/regfile");
  const std::string file = (folder / "r.reg").string();

  void SetUp() override {
    MachineTest::SetUp();
    faults().reset();
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
  }
  void TearDown() override { unsetenv("VLPLATFORM_REGISTRY"), MachineTest::TearDown(); }
  static LSTATUS set(const std::wstring& name, DWORD type, const std::vector<BYTE>& data, DWORD options = 0) {
    HKEY key = nullptr;
    LSTATUS code = RegCreateKeyExW(HKEY_USERS, L"K", 0, nullptr, options, KEY_WRITE, nullptr, &key, nullptr);
    if (code == 0) {
      code = RegSetValueExW(key, name.c_str(), 0, type, data.data(), static_cast<DWORD>(data.size()));
      RegCloseKey(key);
    }
    return code;
  }
};

TEST_F(RegFile, BrokenLinesAreNamedAndChangeNothing) {
  const std::wstring before = registrydump::all();
  const std::pair<const char*, unsigned> rows[] = {{"\"a\"=\"b", 4},
                                                   {"\"a\"=\"\\x\"", 4},
                                                   {"\"a\"=\"b\nc\" d", 4},
                                                   {"\"a\"=dword:", 4},
                                                   {"\"a\"=dword:123456789", 4},
                                                   {"\"a\"=hex:1,\\\n,2", 5},
                                                   {"\"a\"=hex:1,", 4},
                                                   {"\"a\"=hex:123", 4},
                                                   {"\"a\"=hex:1,\\", 4},
                                                   {"\"a\"=hex(1:00", 4},
                                                   {"\"a\"=hex(g):00", 4},
                                                   {"\"a\"=hex 00", 4},
                                                   {"\"a\"=text", 4},
                                                   {"\"a\" 1", 4},
                                                   {"[HKEY_USERS\\x", 4},
                                                   {"[HKEY_USERS\\x] y", 4},
                                                   {"[HKEY_NONE\\x]", 4},
                                                   {"text", 4},
                                                   {"\n\xFF", 5},
                                                   {"[-HKEY_LOCAL_MACHINE\\SOFTWARE]", 4},
                                                   {"[-HKEY_USERS]", 4},
                                                   {"[-HKEY_USERS\\x]\n@=\"\"", 5}};
  for (const auto& [text, line] : rows) {
    const auto result = registry.loadText(std::string("REGEDIT4\n[HKEY_USERS\\New]\n@=\"\"\n") + text);
    EXPECT_EQ(result.line, line) << text << ": " << result.message;
    EXPECT_FALSE(result.ok()) << text;
  }
  EXPECT_EQ(registry.loadText("@=\"\"").line, 1u);
  EXPECT_EQ(registrydump::all(), before);
}

TEST_F(RegFile, RandomRegistriesComeBack) {
  std::mt19937 random(7);
  for (int i = 0; i < 400; ++i) {
    std::vector<BYTE> data(random() % 50);
    for (std::size_t at = 0; at < data.size(); ++at) {
      const bool text = i % 2 == 0;  // characters up to U+0FFFFF, surrogates among them
      data[at] = static_cast<BYTE>(text && at % 4 > 1 ? (at % 4 == 2 ? random() % 2 : 0) : random());
    }
    ASSERT_EQ(set(L"n\"\\\r\n" + std::to_wstring(i), random() % 12, data), 0);
  }
  EXPECT_EQ(RegDeleteKeyW(HKEY_USERS, L"none"), 2);
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
