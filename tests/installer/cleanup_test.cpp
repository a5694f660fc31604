// The actions that remove files, on a product's tree.
#include "fixture.h"

namespace installer {
namespace {

using Action = DWORD(WINAPI*)(MSIHANDLE);
const Texts kFiles{L"Common\\Velorin\\keep",  kShared + L"d",        L"Product\\Resources\\keep", kMerged + L"a",
                   kMerged + L"sub\\deep\\c", kMerged + L"sub\\held"};
const Texts kKept{kFiles[0], kFiles[2]};
const Texts kAround{L"Product\\Resources\\", L"Product\\", L"", L"Common\\Velorin\\Resources\\", L"Common\\Velorin\\"};
// These are gone by the time that their names are marked.
const Texts kSubFolders{kMerged + L"sub\\deep", kMerged + L"sub"};

Texts operator+(Texts texts, const Texts& more) {
  texts.insert(texts.end(), more.begin(), more.end());
  return texts;
}

class Cleanup : public InstallerTest {
 protected:
  // Runs the action on the whole tree, and expects its result, and the files and marks afterwards.
  void expect(Action action, const std::wstring& property, DWORD result, const Texts& files, const Texts& marked) {
    std::for_each(kFiles.begin(), kFiles.end(), [this](const std::wstring& file) { makeFile(file); });
    EXPECT_EQ(run(action, property), result);
    Texts rest;
    std::copy_if(kFiles.begin(), kFiles.end(), std::back_inserter(rest), [this](auto& file) { return there(file); });
    EXPECT_EQ(rest, files);
    EXPECT_EQ(marks(), marked);
    RegDeleteValueW(Key(kRestartKey).get(), kRestartValue);
  }
};

TEST_F(Cleanup, WhatEachActionRemovesAndMarks) {
  expect(&MSICleanMergedFolders, kProduct, 0, kKept, kSubFolders);
  EXPECT_TRUE(fs::is_empty(real(kMerged)) && fs::is_empty(real(kShared)));
  expect(&MSIDeleteResourceFiles, kProduct, 0, kKept, kSubFolders + kAround);
  EXPECT_FALSE(there(L"Product\\Resources\\Merged") || there(L"Common\\Velorin\\Resources\\Merged"));
  EXPECT_EQ(run(&MSIDeleteResourceFiles), 0u);  // nothing is there any more: both folders are marked
  EXPECT_EQ(marks(), (Texts{kMerged, kShared} + kAround));
  clear();
  const Texts withoutA{kFiles[0], kFiles[1], kFiles[2], kFiles[4], kFiles[5]};
  expect(&MSIDeleteFile, path(kFiles[3]), 0, withoutA, {});
  expect(&MSIDeleteFile, path(L"missing"), 0, kFiles, {L"missing"});
  expect(&MSIDeleteFile, path(L"Product\\Resources"), 0, kFiles, {L"Product\\Resources"});
  // Without the shared files the product's tree is done, and no folder around it marked.
  const Texts withoutProduct{kFiles[0], kFiles[1], kFiles[2]};
  SetEnvironmentVariableW(L"CommonProgramFiles", nullptr);
  expect(&MSICleanMergedFolders, kProduct, 1, withoutProduct, kSubFolders);
  SetEnvironmentVariableW(L"CommonProgramFiles", (path(L"Common") + std::wstring(260, L'x')).c_str());
  expect(&MSIDeleteResourceFiles, kProduct, 1, withoutProduct, kSubFolders);
}

TEST_F(Cleanup, WithoutAPropertyThatFitsItsPathsAreLeftOut) {
  const std::wstring longest = path(std::wstring(259 - path(L"").size(), L'x'));
  for (const Action action : {&MSIDeleteResourceFiles, &MSIDeleteFile, &MSICleanMergedFolders}) {
    expect(action, longest + L"x", 2, kFiles, {});
    EXPECT_EQ(action(0), 2u);
  }
  // With the longest there is no room for a path below it, and the other paths are done.
  const Texts rest{kFiles[0], kFiles[2], kFiles[3], kFiles[4], kFiles[5]};
  expect(&MSIDeleteResourceFiles, longest, 0, rest, {longest.substr(path(L"").size()), kAround[3], kAround[4]});
  expect(&MSIDeleteResourceFiles, L"", 0, rest, {kAround[3], kAround[4]});
  expect(&MSICleanMergedFolders, L"", 0, rest, {});
  expect(&MSIDeleteFile, L"", 0, kFiles, {});
  SetEnvironmentVariableW(L"CommonProgramFiles", nullptr);
  expect(&MSICleanMergedFolders, L"", 1, kFiles, {});
}

TEST_F(Cleanup, WhatIsInUseOrReadOnlyIsMarkedBeforeItsFolder) {
  const std::wstring readOnly = kMerged + L"sub\\deep\\r";
  for (const std::wstring& file : {kFiles[5], kFiles[1], readOnly}) {
    makeFile(file);
  }
  fs::permissions(real(readOnly), fs::perms(0222), fs::perm_options::remove);
#ifdef _WIN32
  held = CreateFileW(path(kFiles[5]).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
#else
  machine().files().setInUse(path(kFiles[5]));
#endif
  const Texts inner{readOnly,  kMerged + L"sub\\deep\\", kMerged + L"sub\\deep",
                    kFiles[5], kMerged + L"sub\\",       kMerged + L"sub"};
  EXPECT_EQ(run(&MSICleanMergedFolders), 0u);
  EXPECT_EQ(marks(), inner);
  EXPECT_EQ(run(&MSIDeleteResourceFiles), 0u);
  EXPECT_TRUE(there(readOnly) && there(kFiles[5]) && !there(kShared));
  EXPECT_EQ(marks(), (inner + inner + Texts{kMerged} + kAround));
  fs::permissions(real(readOnly), fs::perms::owner_write, fs::perm_options::add);
}

TEST_F(Cleanup, DetectionSetsItsAnswer) {
  const int answer = IsTerminalServicesEnabled();
  EXPECT_EQ(DetectTSE(session->handle), answer);
  EXPECT_EQ(session->get(L"TSE_ENABLED"), std::to_wstring(answer));
}

TEST_F(Cleanup, ManyFilesAndDeepFolders) {
  std::wstring deep = kMerged;
  for (int i = 0; i < 900; ++i, deep += i < 90 ? L"n\\" : L"") {
    makeFile(deep + std::to_wstring(i));
  }
  EXPECT_EQ(run(&MSICleanMergedFolders), 0u);
  EXPECT_TRUE(fs::is_empty(real(kMerged)));
}

}  // namespace
}  // namespace installer
