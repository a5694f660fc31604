// The life of a dialog with two secure fields.
#include <support/logcapture.h>
#include <support/records.h>

#include <memoryscan/memoryscan.h>

#include <stdexcept>

#include "fixture.h"

namespace dialog {
namespace {

using support::entered;
using support::left;
using support::Log;

class LogOn : public SecretForm {
 public:
  CStringT<wchar_t> user;
  bool refuse = false;
  std::map<int, std::wstring> atEnd;  ///< what the secure controls held when EndDialog was through

  void EndDialog(int result) override {
    SecretForm::EndDialog(result);
    for (const int id : {IDC_PASSWORD, IDC_SECOND}) {
      atEnd[id] = held(id);
    }
  }

 protected:
  void DoDataExchange(CDataExchange* exchange) override {
    ::DDX_Text(exchange, IDC_USER, user);
    SecretForm::DoDataExchange(exchange);
    if (exchange->m_bSaveAndValidate && refuse) {
      exchange->Fail();
    }
  }
};

class SecureDialog : public DialogTest {
 protected:
  void SetUp() override {
    DialogTest::SetUp();
    logOn.password = L"first";
    logOn.second = L"second one";
  }
  void typeAll() {
    logOn.type(IDC_USER, L"alice");
    logOn.type(IDC_PASSWORD, L"hunter2");
    logOn.type(IDC_SECOND, L"");
    SetWindowTextW(logOn.control(IDC_SECOND), L"");
  }
  void expectBlank(std::size_t password, std::size_t second) {
    EXPECT_EQ(logOn.atEnd[IDC_PASSWORD], spaces(password));
    EXPECT_EQ(logOn.atEnd[IDC_SECOND], spaces(second));
  }
  std::wstring typed() const {
    return std::wstring(logOn.user.GetString()) + L'|' + logOn.password.GetString() + L'|' + logOn.second.GetString();
  }

  LogOn logOn;
};

// The records of members that call each other.
Log inside(const wchar_t* name, const Log& inner) {
  using support::operator+;
  return Log{entered(name)} + inner + Log{left(name)};
}
Log inEach(const Log& once) {
  using support::operator+;
  return once + once;
}
const Log kExchange = inEach(inside(L"CSecureDialog::DDX_Text", {}));
const Log kEnd = inside(L"CSecureDialog::EndDialog", inside(L"CSecureDialog::SecureCleanUp", kExchange));

TEST_F(SecureDialog, FirstAndLaterExchangesOverwriteBeforeTheyShow) {
  using Texts = std::vector<std::wstring>;
  logOn.watching = true;
  logOn.steps = {
      [&] {
        // Only the first control's memory is stretched; the second one was empty.
        EXPECT_EQ(logOn.shown[IDC_PASSWORD], (Texts{spaces(1024), L"first"}));
        EXPECT_EQ(logOn.shown[IDC_SECOND].back(), L"second one");
        logOn.shown.clear();
        logOn.password = L"changed";
        logOn.second = L"";
        EXPECT_TRUE(logOn.UpdateData(FALSE));
        EXPECT_EQ(logOn.shown[IDC_PASSWORD], (Texts{spaces(5), L"changed"}));
        EXPECT_EQ(logOn.shown[IDC_SECOND], (Texts{spaces(10), L""}));
      },
  };
  EXPECT_EQ(logOn.DoModal(), 99);
}

TEST_F(SecureDialog, OkReadsTheControlsThenBlanksThem) {
  support::LogCapture log(TXLOG_ALL_LEVELS);
  logOn.steps = {[&] {
    EXPECT_TRUE(log.was(inside(L"CSecureDialog::OnInitDialogSecure", kExchange)));
    typeAll();
    EXPECT_TRUE(log.was({}));
    logOn.press(IDOK);
  }};
  EXPECT_EQ(logOn.DoModal(), 1);
  using support::operator+;
  EXPECT_TRUE(log.was(inside(L"CSecureDialog::OnOK", kExchange + kEnd)));
  EXPECT_EQ(typed(), L"alice|hunter2|");
  expectBlank(7, 0);
}

TEST_F(SecureDialog, CancelReadsNothing) {
  support::LogCapture log(TXLOG_ALL_LEVELS);
  logOn.steps = {[&] {
    typeAll();
    log.take();
    logOn.press(IDCANCEL);
  }};
  EXPECT_EQ(logOn.DoModal(), 2);
  EXPECT_TRUE(log.was(inside(L"CSecureDialog::OnCancel", kEnd)));
  EXPECT_EQ(typed(), L"|first|second one");
  expectBlank(7, 0);
}

TEST_F(SecureDialog, RefusedInputLeavesTheDialogOpenAsItIs) {
  support::LogCapture log(TXLOG_ALL_LEVELS);
  logOn.steps = {[&] {
                   typeAll();
                   logOn.refuse = true;
                   log.take();
                   logOn.press(IDOK);
                   using support::operator+;
                   EXPECT_TRUE(log.was(Log{entered(L"CSecureDialog::OnOK")} + kExchange));
                   EXPECT_EQ(logOn.held(IDC_PASSWORD), L"hunter2");
                 },
                 [&] {
                   logOn.refuse = false;
                   logOn.press(IDOK);
                 }};
  EXPECT_EQ(logOn.DoModal(), 1);
  EXPECT_EQ(typed(), L"alice|hunter2|");
}

TEST_F(SecureDialog, EndDialogBlanksAndASecondRunBeginsAnew) {
  logOn.steps = {[&] {
    logOn.type(IDC_PASSWORD, L"typed");
    logOn.EndDialog(77);
  }};
  EXPECT_EQ(logOn.DoModal(), 77);
  EXPECT_EQ(typed(), L"|first|second one");
  expectBlank(5, 10);

  logOn.watching = true;
  logOn.steps = {[&] {
    EXPECT_EQ(logOn.shown[IDC_PASSWORD].front(), spaces(1024));
    EXPECT_EQ(logOn.held(IDC_PASSWORD), L"first");
    logOn.press(IDOK);
  }};
  EXPECT_EQ(logOn.DoModal(), 1);
  EXPECT_EQ(typed(), L"|first|second one");
}

TEST_F(SecureDialog, DestroyWindowBlanksNothing) {
  ASSERT_TRUE(logOn.Create(IDD_LOG_ON));
  support::LogCapture log(TXLOG_ALL_LEVELS);
  logOn.watching = true;
  EXPECT_NE(logOn.DestroyWindow(), 0);
  EXPECT_TRUE(log.was(inside(L"CSecureDialog::DestroyWindow", {})));
  EXPECT_TRUE(logOn.shown.empty());
  EXPECT_EQ(logOn.DestroyWindow(), 0);
}

// The framework cancels a dialog that a handler's exception leaves, so that the controls are blank all the same.
TEST_F(SecureDialog, ExceptionOutOfAnExchangeBlanksAndLeavesDoModal) {
  struct Failing : LogOn {
    bool fail = false;
    void DoDataExchange(CDataExchange* exchange) override {
      LogOn::DoDataExchange(exchange);
      if (exchange->m_bSaveAndValidate && fail) {
        AfxThrowMemoryException();
      }
    }
  } failing;
  failing.steps = {[&] {
    failing.type(IDC_PASSWORD, L"hunter2");
    failing.fail = true;
    failing.press(IDOK);
  }};
  EXPECT_THROW(failing.DoModal(), CMemoryException*);
  EXPECT_EQ(failing.atEnd[IDC_PASSWORD], spaces(7));
  EXPECT_EQ(failing.m_hWnd, nullptr);
}

TEST_F(SecureDialog, ClassRecord) {
  const CRuntimeClass* const record = logOn.GetRuntimeClass();
  EXPECT_EQ(record, &CSecureDialog::classCSecureDialog);
  EXPECT_EQ(record, CSecureDialog::GetThisClass());
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
  const auto type = [&] {
    memoryscan::Revealed<wchar_t> text(secret);
    for (int i = 0; i < text.length(); ++i) {
      SendMessageW(logOn.control(IDC_PASSWORD), WM_CHAR, text.get()[i], 0);
    }
  };
  logOn.password = L"";
  logOn.steps = {[&] {
                   type();
                   EXPECT_GT(memoryscan::scanMemory(secret).count, 0u);
                 },
                 [&] { logOn.press(IDOK); }};
  EXPECT_EQ(logOn.DoModal(), 1);
  EXPECT_EQ(logOn.password.GetLength(), int{memoryscan::Secret::kLength});
  expectBlank(memoryscan::Secret::kLength, 10);
  memoryscan::scrubDeadStack();
  const memoryscan::ScanResult owned = memoryscan::scanMemory(secret);
  EXPECT_EQ(owned.count, 1u) << testing::PrintToString(owned);
  logOn.password.Empty();
  memoryscan::scrubDeadStack();
  const memoryscan::ScanResult gone = memoryscan::scanMemory(secret);
  EXPECT_EQ(gone.count, 0u) << testing::PrintToString(gone);
}

#endif

}  // namespace
}  // namespace dialog
