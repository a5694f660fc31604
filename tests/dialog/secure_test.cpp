// The life of a dialog with two secure fields.
#include <support/logcapture.h>
#include <support/records.h>

#include <memoryscan/memoryscan.h>

#include "fixture.h"

namespace dialog {
namespace {

using support::entered;
using support::left;
using support::Log;

class LogOn : public SecretForm {
 public:
  std::function<void(CDataExchange*)> atRead = [](CDataExchange*) {};
  std::vector<std::wstring> atEnd;  ///< what the secure controls held when EndDialog was through

  void EndDialog(int result) override {
    SecretForm::EndDialog(result);
    atEnd = {held(IDC_PASSWORD), held(IDC_SECOND)};
  }

 protected:
  void DoDataExchange(CDataExchange* exchange) override {
    SecretForm::DoDataExchange(exchange);
    if (exchange->m_bSaveAndValidate) {
      atRead(exchange);
    }
  }
};

using Texts = std::vector<std::wstring>;

class SecureDialog : public DialogTest {
 protected:
  void SetUp() override {
    DialogTest::SetUp();
    logOn.password = L"first";
    logOn.second = L"second one";
  }
  // Types into both controls, and presses a button.
  void typeAndPress(int button) {
    logOn.type(IDC_PASSWORD, L"hunter2");
    SetWindowTextW(logOn.control(IDC_SECOND), L"");
    log.take();
    logOn.press(button);
  }
  void expectBlank(std::size_t password, std::size_t second) const {
    EXPECT_EQ(logOn.atEnd, (Texts{spaces(password), spaces(second)}));
  }
  std::wstring typed() const { return std::wstring(logOn.password.GetString()) + L'|' + logOn.second.GetString(); }

  support::LogCapture log;
  LogOn logOn;
};

// The records of members that call each other.
Log inside(const wchar_t* name, const Log& inner) {
  return Log{entered(name)} + inner + Log{left(name)};
}
const Log kExchange = inside(L"CSecureDialog::DDX_Text", {}) + inside(L"CSecureDialog::DDX_Text", {});
const Log kEnd = inside(L"CSecureDialog::EndDialog", inside(L"CSecureDialog::SecureCleanUp", kExchange));

TEST_F(SecureDialog, FirstAndLaterExchangesOverwriteBeforeTheyShow) {
  logOn.watching = true;
  logOn.steps = {[&] {
    // Only the first control's memory is stretched; the second one was empty.
    EXPECT_EQ(logOn.shown[IDC_PASSWORD], (Texts{spaces(1024), L"first"}));
    EXPECT_EQ(logOn.shown[IDC_SECOND].back(), L"second one");
    logOn.shown.clear();
    logOn.password = L"changed";
    logOn.second = L"";
    EXPECT_TRUE(logOn.UpdateData(FALSE));
    EXPECT_EQ(logOn.shown[IDC_PASSWORD], (Texts{spaces(5), L"changed"}));
    EXPECT_EQ(logOn.shown[IDC_SECOND], (Texts{spaces(10), L""}));
  }};
  EXPECT_EQ(logOn.DoModal(), 99);
}

TEST_F(SecureDialog, OkReadsTheControlsThenBlanksThem) {
  logOn.steps = {[&] {
    EXPECT_TRUE(log.was(inside(L"CSecureDialog::OnInitDialogSecure", kExchange)));
    typeAndPress(IDOK);
  }};
  EXPECT_EQ(logOn.DoModal(), 1);
  EXPECT_TRUE(log.was(inside(L"CSecureDialog::OnOK", kExchange + kEnd)));
  EXPECT_EQ(typed(), L"hunter2|");
  expectBlank(7, 0);
}

TEST_F(SecureDialog, CancelReadsNothing) {
  logOn.steps = {[&] { typeAndPress(IDCANCEL); }};
  EXPECT_EQ(logOn.DoModal(), 2);
  EXPECT_TRUE(log.was(inside(L"CSecureDialog::OnCancel", kEnd)));
  EXPECT_EQ(typed(), L"first|second one");
  expectBlank(7, 0);
}

TEST_F(SecureDialog, RefusedInputLeavesTheDialogOpenAsItIs) {
  logOn.atRead = &CDataExchange::Fail;
  logOn.steps = {[&] {
    typeAndPress(IDOK);
    EXPECT_TRUE(log.was(Log{entered(L"CSecureDialog::OnOK")} + kExchange));
    EXPECT_EQ(logOn.held(IDC_PASSWORD), L"hunter2");
  }};
  EXPECT_EQ(logOn.DoModal(), 99);
}

// The framework cancels a dialog that a handler's exception leaves, so that the controls are blank all the same.
TEST_F(SecureDialog, ExceptionOutOfAnExchangeBlanksAndLeavesDoModal) {
  logOn.atRead = [](CDataExchange*) { AfxThrowMemoryException(); };
  logOn.steps = {[&] { typeAndPress(IDOK); }};
  EXPECT_THROW(logOn.DoModal(), CMemoryException*);
  expectBlank(7, 0);
}

TEST_F(SecureDialog, EndDialogBlanksAndASecondRunBeginsAnew) {
  logOn.steps = {[&] {
    logOn.type(IDC_PASSWORD, L"typed");
    logOn.EndDialog(77);
  }};
  EXPECT_EQ(logOn.DoModal(), 77);
  expectBlank(5, 10);

  logOn.watching = true;
  logOn.steps = {[&] {
    EXPECT_EQ(logOn.shown[IDC_PASSWORD], (Texts{spaces(1024), L"first"}));
    logOn.press(IDOK);
  }};
  EXPECT_EQ(logOn.DoModal(), 1);
  EXPECT_EQ(typed(), L"first|second one");
}

TEST_F(SecureDialog, DestroyWindowBlanksNothing) {
  ASSERT_TRUE(logOn.Create(IDD_LOG_ON));
  log.take();
  logOn.watching = true;
  EXPECT_NE(logOn.DestroyWindow(), 0);
  EXPECT_TRUE(log.was(inside(L"CSecureDialog::DestroyWindow", {})));
  EXPECT_TRUE(logOn.shown.empty());
  EXPECT_EQ(logOn.DestroyWindow(), 0);
}

TEST_F(SecureDialog, ClassRecord) {
  const CRuntimeClass* const record = logOn.GetRuntimeClass();
  EXPECT_TRUE(record == &CSecureDialog::classCSecureDialog && record == CSecureDialog::GetThisClass());
  EXPECT_STREQ(record->m_lpszClassName, "CSecureDialog");
  EXPECT_EQ(record->m_wSchema, 0xFFFFu);
  EXPECT_EQ(record->m_nObjectSize, static_cast<int>(sizeof(CSecureDialog)));
  EXPECT_EQ(record->m_pfnCreateObject, nullptr);
  EXPECT_EQ(record->m_pfnGetBaseClass(), CDialog::GetThisClass());
  EXPECT_TRUE(logOn.IsKindOf(RUNTIME_CLASS(CWnd)));
  EXPECT_FALSE(CDialog().IsKindOf(record));
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)  // their heaps keep what is given back

// The typed text goes to the control character by character, so the only copies are those of control and members.
TEST_F(SecureDialog, TypedPasswordIsGoneWithItsOwner) {
  const memoryscan::Secret secret;
  const auto expectCopies = [&](std::size_t count) {
    memoryscan::scrubDeadStack();
    const memoryscan::ScanResult found = memoryscan::scanMemory(secret);
    EXPECT_EQ(found.count, count) << testing::PrintToString(found);
  };
  logOn.password = L"";
  logOn.steps = {[&] {
    memoryscan::Revealed<wchar_t> text(secret);
    for (int i = 0; i < memoryscan::Revealed<wchar_t>::length(); ++i) {
      SendMessageW(logOn.control(IDC_PASSWORD), WM_CHAR, text.get()[i], 0);
    }
    logOn.press(IDOK);
  }};
  EXPECT_EQ(logOn.DoModal(), 1);
  expectBlank(memoryscan::Secret::kLength, 10);
  expectCopies(1);
  logOn.password.Empty();
  expectCopies(0);
}

#endif

}  // namespace
}  // namespace dialog
