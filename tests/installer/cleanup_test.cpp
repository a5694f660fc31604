// The actions that remove files, on a product's tree.
#include "fixture.h"

namespace installer {
namespace {

using namespace std::string_literals;

const std::wstring kMerged = L"Product\\Resources\\Merged\\";
const std::wstring kSharedMerged = L"Common\\Velorin\\Resources\\Merged\\";

class Cleanup : public InstallerTest {
 protected:
  void SetUp() override {
    InstallerTest::SetUp();
    for (const wchar_t* const file :
         {L"Product\\keep", L"Product\\Resources\\keep", L"Product\\Resources\\Merged\\a",
          L"Product\\Resources\\Merged\\sub\\b", L"Product\\Resources\\Merged\\sub\\deep\\c", L"Common\\Velorin\\keep",
          kSharedMerged + L"d"}) {
      makeFile(file);
    }
    session->set(L"CustomActionData", path(L"Product\\"));
  }
  // All but what `removed` names, which may be a folder with all below it.
  std::set<std::wstring> without(const Texts& removed) const {
    std::set<std::wstring> rest = before;
    for (const std::wstring& text : removed) {
      std::erase_if(rest, [&](const std::wstring& name) { return name.starts_with(text); });
    }
    return rest;
  }
  DWORD run(DWORD(WINAPI* action)(MSIHANDLE)) {
    before = found();
    return action(session->handle());
  }

  std::set<std::wstring> before;
};

const Texts kOuter{L"Product\\Resources\\", L"Product\\", L"", L"Common\\Velorin\\Resources\\", L"Common\\Velorin\\"};
// The sub-folders are gone when their names are marked.
const Texts kSubFolders{kMerged + L"sub\\deep", kMerged + L"sub"};

Texts operator+(Texts texts, const Texts& more) {
  texts.insert(texts.end(), more.begin(), more.end());
  return texts;
}

TEST_F(Cleanup, DeleteResourceFilesRemovesBothTreesAndMarksTheFoldersAround) {
  EXPECT_EQ(run(&MSIDeleteResourceFiles), 0u);
  EXPECT_EQ(found(), without({kMerged, kSharedMerged}));
  EXPECT_EQ(marks(), kSubFolders + kOuter);
  // Nothing is there the second time: the folders are marked.
  EXPECT_EQ(run(&MSIDeleteResourceFiles), 0u);
  EXPECT_EQ(found(), before);
  EXPECT_EQ(marks(), kSubFolders + kOuter + Texts{kMerged, kSharedMerged} + kOuter);
}

TEST_F(Cleanup, CleanMergedFoldersKeepsTheTwoFolders) {
  EXPECT_EQ(run(&MSICleanMergedFolders), 0u);
  EXPECT_EQ(found(), without({kMerged + L"a", kMerged + L"sub\\", kSharedMerged + L"d"}));
  EXPECT_EQ(marks(), kSubFolders);
}

TEST_F(Cleanup, DeleteFileRemovesOneFile) {
  session->set(L"CustomActionData", path(kMerged + L"a"));
  EXPECT_EQ(run(&MSIDeleteFile), 0u);
  EXPECT_EQ(found(), without({kMerged + L"a"}));
  EXPECT_EQ(marks(), Texts{});
  for (const std::wstring& stays : {L"Product\\missing"s, L"Product\\Resources"s}) {
    session->set(L"CustomActionData", path(stays));
    EXPECT_EQ(run(&MSIDeleteFile), 0u);
    EXPECT_EQ(found(), before);
    EXPECT_EQ(marks().back(), stays);
  }
}

TEST_F(Cleanup, WhatIsInUseOrReadOnlyIsMarkedBeforeItsFolder) {
  hold(kMerged + L"sub\\b");
  makeFile(kMerged + L"sub\\deep\\e");
  protect(kMerged + L"sub\\deep\\e");
  const Texts inner{kMerged + L"sub\\b",    kMerged + L"sub\\deep\\e", kMerged + L"sub\\deep\\",
                    kMerged + L"sub\\deep", kMerged + L"sub\\",        kMerged + L"sub"};
  EXPECT_EQ(run(&MSICleanMergedFolders), 0u);
  EXPECT_EQ(marks(), inner);
  EXPECT_EQ(run(&MSIDeleteResourceFiles), 0u);
  EXPECT_EQ(found(), without({kSharedMerged}));
  EXPECT_TRUE(found().contains(kMerged + L"sub\\b") && found().contains(kMerged + L"sub\\deep\\e"));
  EXPECT_EQ(marks(), inner + inner + Texts{kMerged} + kOuter);
  unprotect(kMerged + L"sub\\deep\\e");
}

TEST_F(Cleanup, WithoutSharedFilesTheProductsTreeIsDoneAndNothingMarked) {
  for (const std::wstring& value : {L""s, std::wstring(260, L'x')}) {
    SetEnvironmentVariableW(L"CommonProgramFiles", value.empty() ? nullptr : value.c_str());
    makeFile(kMerged + L"again");
    EXPECT_EQ(run(&MSICleanMergedFolders), 1u);
    EXPECT_TRUE(fs::is_empty(real(kMerged)));
    EXPECT_EQ(run(&MSIDeleteResourceFiles), 1u);
    EXPECT_EQ(found(), without({kMerged}));
    EXPECT_EQ(marks(), kSubFolders);
  }
}

TEST_F(Cleanup, WithoutAPropertyNothingIsTouched) {
  const std::wstring longest = path(std::wstring(259 - path(L"").size(), L'x'));
  const struct {
    std::wstring property;
    DWORD result;
  } rows[] = {{L"", 0}, {longest + L"x", 2}};
  for (const auto& row : rows) {
    session->set(L"CustomActionData", row.property);
    for (const auto action : {&MSIDeleteResourceFiles, &MSIDeleteFile, &MSICleanMergedFolders}) {
      EXPECT_EQ(run(action), row.result);
      EXPECT_EQ(found(), before);
      EXPECT_EQ(marks(), Texts{});
    }
  }
  EXPECT_EQ(MSIDeleteFile(0), 2u);
  // The longest that is read: no path below it has room, and the others are done.
  session->set(L"CustomActionData", longest);
  EXPECT_EQ(run(&MSIDeleteResourceFiles), 0u);
  EXPECT_EQ(found(), without({kSharedMerged}));
  EXPECT_EQ(marks(), (Texts{longest.substr(path(L"").size()), kOuter[3], kOuter[4]}));
}

TEST_F(Cleanup, ManyFilesAndDeepFolders) {
  std::wstring deep = kMerged;
  for (int i = 0; i < 90; ++i) {
    deep += L"n\\";
  }
  makeFile(deep + L"f");
  for (int i = 0; i < 1500; ++i) {
    makeFile(kMerged + L"many\\" + std::to_wstring(i));
  }
  EXPECT_EQ(run(&MSIDeleteResourceFiles), 0u);
  EXPECT_FALSE(fs::exists(real(L"Product\\Resources\\Merged")));
}

}  // namespace
}  // namespace installer
