// The actions that remove files, on a product's tree.
#include "fixture.h"

namespace installer {
namespace {

using Action = DWORD(WINAPI*)(MSIHANDLE);
const Texts kFiles{L"Common\\Velorin\\keep",  kShared + L"d",       L"Product\\Resources\\keep", kMerged + L"a",
                   kMerged + L"sub\\deep\\c", kMerged + L"sub\\ten"};
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
  // Runs the action on the whole tree with this property, and expects the result and the files and marks afterwards.
  void expect(Action action, const std::wstring& property, DWORD result, const Texts& files, const Texts& marked) {
    std::for_each(kFiles.begin(), kFiles.end(), [this](const std::wstring& file) { makeFile(file); });
    session->set(L"CustomActionData", property);
    EXPECT_EQ(action(session->handle), result);
    Texts found;
    std::copy_if(kFiles.begin(), kFiles.end(), std::back_inserter(found),
                 [this](const std::wstring& file) { return fs::exists(real(file)); });
    EXPECT_EQ(found, files);
    EXPECT_EQ(marks(), marked);
  }
  bool there(const std::wstring& folder) const { return fs::exists(real(folder)); }
};

TEST_F(Cleanup, DeleteResourceFilesRemovesBothTreesAndMarksTheFoldersAround) {
  expect(&MSIDeleteResourceFiles, path(L"Product\\"), 0, kKept, kSubFolders + kAround);
  EXPECT_FALSE(there(L"Product\\Resources\\Merged") || there(L"Common\\Velorin\\Resources\\Merged"));
  // Nothing is there the second time: both folders are marked.
  EXPECT_EQ(MSIDeleteResourceFiles(session->handle), 0u);
  EXPECT_EQ(marks(), (kSubFolders + kAround + Texts{kMerged, kShared} + kAround));
}

TEST_F(Cleanup, CleanMergedFoldersKeepsTheTwoFolders) {
  expect(&MSICleanMergedFolders, path(L"Product\\"), 0, kKept, kSubFolders);
  EXPECT_TRUE(fs::is_empty(real(kMerged)) && fs::is_empty(real(kShared)));
}

TEST_F(Cleanup, DeleteFileRemovesOneFile) {
  const Texts rest{kFiles[0], kFiles[1], kFiles[2], kFiles[4], kFiles[5]};
  expect(&MSIDeleteFile, path(kMerged + L"a"), 0, rest, {});
  expect(&MSIDeleteFile, path(L"missing"), 0, kFiles, {L"missing"});
  expect(&MSIDeleteFile, path(L"Product\\Resources"), 0, kFiles, {L"missing", L"Product\\Resources"});
}

TEST_F(Cleanup, WhatIsInUseOrReadOnlyIsMarkedBeforeItsFolder) {
  makeFile(kFiles[4]);
  makeFile(kFiles[5]);
  const std::wstring readOnly = kMerged + L"sub\\deep\\r";
  makeFile(readOnly);
  fs::permissions(real(readOnly), fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                  fs::perm_options::remove);
  hold(kFiles[5]);
  const Texts inner = Texts{readOnly, kMerged + L"sub\\deep\\", kMerged + L"sub\\deep", kFiles[5]} +
                      Texts{kMerged + L"sub\\", kMerged + L"sub"};
  ASSERT_EQ(MSICleanMergedFolders(0), 2u);
  session->set(L"CustomActionData", path(L"Product\\"));
  EXPECT_EQ(MSICleanMergedFolders(session->handle), 0u);
  EXPECT_EQ(marks(), inner);
  EXPECT_EQ(MSIDeleteResourceFiles(session->handle), 0u);
  EXPECT_TRUE(there(readOnly) && there(kFiles[5]) && !there(kFiles[4]));
  EXPECT_EQ(marks(), (inner + inner + Texts{kMerged, kShared} + kAround));
  fs::permissions(real(readOnly), fs::perms::owner_write, fs::perm_options::add);
}

TEST_F(Cleanup, WithoutSharedFilesTheProductsTreeIsDoneAndNoFolderAroundMarked) {
  const Texts rest{kFiles[0], kFiles[1], kFiles[2]};
  SetEnvironmentVariableW(L"CommonProgramFiles", nullptr);
  expect(&MSICleanMergedFolders, path(L"Product\\"), 1, rest, kSubFolders);
  SetEnvironmentVariableW(L"CommonProgramFiles", (path(L"Common") + std::wstring(260, L'x')).c_str());
  expect(&MSIDeleteResourceFiles, path(L"Product\\"), 1, rest, kSubFolders + kSubFolders);
  EXPECT_FALSE(there(L"Product\\Resources\\Merged"));
}

TEST_F(Cleanup, WithoutAPropertyThatFitsNothingIsTouched) {
  const std::wstring longest = path(std::wstring(259 - path(L"").size(), L'x'));
  for (const Action action : {&MSIDeleteResourceFiles, &MSIDeleteFile, &MSICleanMergedFolders}) {
    expect(action, L"", 0, kFiles, {});
    expect(action, longest + L"x", 2, kFiles, {});
  }
  // The longest: there is no room for a path below it, and the other paths are done.
  const Texts rest{kFiles[0], kFiles[2], kFiles[3], kFiles[4], kFiles[5]};
  expect(&MSIDeleteResourceFiles, longest, 0, rest, {longest.substr(path(L"").size()), kAround[3], kAround[4]});
}

TEST_F(Cleanup, ManyFilesAndDeepFolders) {
  std::wstring deep = kMerged;
  for (int i = 0; i < 90; ++i, deep += L"n\\") {
    makeFile(deep + L"f");
  }
  for (int i = 0; i < 1200; ++i) {
    makeFile(kMerged + L"many\\" + std::to_wstring(i));
  }
  session->set(L"CustomActionData", path(L"Product\\"));
  EXPECT_EQ(MSIDeleteResourceFiles(session->handle), 0u);
  EXPECT_FALSE(there(L"Product\\Resources\\Merged"));
}

}  // namespace
}  // namespace installer
