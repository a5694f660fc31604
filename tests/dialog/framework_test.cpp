// The framework's dialog: exchange, message maps, both ways to run, and exceptions of handlers.
#include <stdexcept>

#include "fixture.h"

namespace dialog {
namespace {

class Form : public Driven<CDialog> {
  DECLARE_DYNAMIC(Form)
  DECLARE_MESSAGE_MAP()

 public:
  explicit Form(UINT id = IDD_LOG_ON) : Driven(id) {}
  explicit Form(const wchar_t* name) : Driven(name) {}

  CStringT<wchar_t> user;
  int most = 100;
  int clears = 0;
  int changes = 0;
  Step onInit;
  bool endsItself = false;
  bool* gone = nullptr;

 protected:
  BOOL OnInitDialog() override {
    if (onInit) {
      onInit();
    }
    begin();
    return Driven::OnInitDialog();
  }
  void DoDataExchange(CDataExchange* exchange) override {
    DDX_Text(exchange, IDC_USER, user);
    DDV_MaxChars(exchange, user, most);
  }
  void PostNcDestroy() override {
    if (endsItself) {
      *gone = true;
      delete this;
    }
  }
  void OnClear() { ++clears; }
  void OnUserChanged() { ++changes; }
  LRESULT OnAsked(WPARAM first, LPARAM second) { return static_cast<LRESULT>(first) * second; }
};

IMPLEMENT_DYNAMIC(Form, CDialog)

BEGIN_MESSAGE_MAP(Form, CDialog)
ON_BN_CLICKED(IDC_CLEAR, OnClear)
ON_EN_CHANGE(IDC_USER, OnUserChanged)
ON_MESSAGE(WM_APP + 1, OnAsked)
END_MESSAGE_MAP()

using Framework = DialogTest;

TEST_F(Framework, ExchangesBothWays) {
  Form form;
  form.user = L"alice";
  form.steps = {[&] {
    EXPECT_EQ(form.held(IDC_USER), L"alice");
    form.type(IDC_USER, L"bob");
    EXPECT_TRUE(form.UpdateData());
    EXPECT_STREQ(form.user.GetString(), L"bob");
    form.type(IDC_USER, L"carol");
    form.press(IDOK);
  }};
  EXPECT_EQ(form.DoModal(), IDOK);
  EXPECT_STREQ(form.user.GetString(), L"carol");
  EXPECT_EQ(form.m_hWnd, nullptr);
  EXPECT_FALSE(form.UpdateData()) << "without a window";
}

TEST_F(Framework, MessageMaps) {
  Form form;
  form.steps = {[&] {
                  form.press(IDC_CLEAR);
                  EXPECT_EQ(form.clears, 1);
                  form.changes = 0;
                  form.UpdateData(FALSE);
                  EXPECT_EQ(form.changes, 0) << "no user made this change";
                  form.type(IDC_USER, L"xy");
                  EXPECT_GT(form.changes, 0);
                  EXPECT_EQ(SendMessageW(form.m_hWnd, WM_APP + 1, 6, 7), 42);
                  EXPECT_EQ(SendMessageW(form.m_hWnd, WM_APP + 2, 6, 7), 0);
                  EXPECT_TRUE(form.OnCmdMsg(IDC_CLEAR, BN_CLICKED));
                  EXPECT_FALSE(form.OnCmdMsg(IDC_USER, BN_CLICKED));
                  PostMessageW(form.m_hWnd, WM_CLOSE, 0, 0);
                },
                // The close box posts its command behind what is posted already.
                [] {}, [] {}};
  EXPECT_EQ(form.DoModal(), IDCANCEL) << "by the base class's map";
  EXPECT_STREQ(form.GetRuntimeClass()->m_lpszClassName, "Form");
  EXPECT_TRUE(form.IsKindOf(RUNTIME_CLASS(CDialog)));
}

TEST_F(Framework, RefusedInputIsMarkedAndStays) {
  Form form;
  form.most = 3;
  form.steps = {[&] {
    form.type(IDC_USER, L"abcd");
    EXPECT_EQ(form.held(IDC_USER), L"abc") << "no more can be typed";
    SetWindowTextW(form.control(IDC_USER), L"too long");
    SetFocus(form.control(IDC_CLEAR));
    form.press(IDOK);
    EXPECT_NE(form.m_hWnd, nullptr);
    EXPECT_EQ(GetFocus(), form.control(IDC_USER));
    EXPECT_EQ(SendMessageW(form.control(IDC_USER), EM_GETSEL, 0, 0), 8 << 16);
  }};
  EXPECT_EQ(form.DoModal(), 99);
}

TEST_F(Framework, TemplatesByNameAndNone) {
  std::wstring name = L"named";
  Form form(name.c_str());
  name.assign(name.size(), L'x');
  form.steps = {[&] { EXPECT_EQ(form.DoModal(), -1) << "open already"; }};
  EXPECT_EQ(form.DoModal(), 99);
  for (const bool named : {false, true}) {
    SetLastError(0);
    Form missing = named ? Form(L"MISSING") : Form(IDD_LOG_ON + 1);
    EXPECT_EQ(missing.DoModal(), -1);
    EXPECT_NE(GetLastError(), 0u);
    EXPECT_FALSE(missing.Create(IDD_LOG_ON + 1));
  }
}

TEST_F(Framework, ModelessDialogLivesAsLongAsItsWindow) {
  bool gone = false;
  auto* const form = new Form;
  form->endsItself = true;
  form->gone = &gone;
  ASSERT_TRUE(form->Create(L"NAMED"));
  EXPECT_FALSE(form->Create(L"NAMED")) << "open already";
  EXPECT_TRUE(form->DestroyWindow());
  EXPECT_TRUE(gone);

  HWND window = nullptr;
  {
    Form scoped;
    ASSERT_TRUE(scoped.Create(IDD_LOG_ON));
    window = scoped.m_hWnd;
    EXPECT_TRUE(IsWindow(window));
  }
  EXPECT_FALSE(IsWindow(window));
}

TEST_F(Framework, ExceptionsOfHandlers) {
  Form form;
  // Whatever is thrown and wherever: it cancels a modal dialog and leaves DoModal, and the next run knows nothing of
  // it.
  form.onInit = [] { throw std::runtime_error("at the beginning"); };
  EXPECT_THROW(form.DoModal(), std::runtime_error);
  EXPECT_THROW(form.Create(IDD_LOG_ON), std::runtime_error);
  EXPECT_EQ(form.m_hWnd, nullptr);
  form.onInit = nullptr;
  form.steps = {[] { AfxThrowOleException(static_cast<HRESULT>(0x80070057)); }, [] { throw 1; }};
  try {
    form.DoModal();
    FAIL() << "nothing thrown";
  } catch (COleException* exception) {
    EXPECT_EQ(exception->m_sc, static_cast<HRESULT>(0x80070057));
    exception->Delete();
  }
  form.steps = {};
  EXPECT_EQ(form.DoModal(), 99);

  // Of a modeless one it ends in the handler.
  form.onInit = nullptr;
  ASSERT_TRUE(form.Create(IDD_LOG_ON));
  form.steps = {[] { AfxThrowOleException(0); }};
  SendMessageW(form.m_hWnd, WM_APP, 0, 0);
  EXPECT_NE(form.m_hWnd, nullptr);
}

// Whatever OnInitDialog does to it: nothing is left of it, and an object that deletes itself is not touched again.
TEST_F(Framework, ModelessDialogThatEndsAtItsBeginning) {
  const auto create = [](const std::function<void(Form*)>& atBeginning) {
    bool gone = false;
    auto* const form = new Form;
    form->endsItself = true;
    form->gone = &gone;
    form->onInit = [=] { atBeginning(form); };
    BOOL made = TRUE;
    try {
      made = form->Create(IDD_LOG_ON);
    } catch (const std::runtime_error&) {
      made = FALSE;
    }
    EXPECT_FALSE(made);
    EXPECT_TRUE(gone);
  };
  create([](Form*) { throw std::runtime_error("at the beginning"); });
  create([](Form* form) { form->EndDialog(5); });
  create([](Form* form) {
    form->DestroyWindow();
    throw std::runtime_error("and then");
  });
}

TEST_F(Framework, ThreadThatIsAskedToQuit) {
  struct Waiting : CDialog {
    Waiting() : CDialog(L"NAMED") {}
    BOOL OnInitDialog() override {
      PostQuitMessage(7);
      return CDialog::OnInitDialog();
    }
  } waiting;
  EXPECT_EQ(waiting.DoModal(), IDCANCEL);
  MSG message;
  EXPECT_FALSE(GetMessageW(&message, nullptr, 0, 0)) << "it is asked again";
  EXPECT_EQ(message.wParam, 7u);
}

TEST_F(Framework, ControlThatIsNotThere) {
  struct Wrong : Driven<CDialog> {
    Wrong() : Driven(L"NAMED") {}
    CStringT<wchar_t> text;
    void DoDataExchange(CDataExchange* exchange) override { DDX_Text(exchange, IDC_PASSWORD, text); }
  } wrong;
  EXPECT_THROW(wrong.DoModal(), CInvalidArgException*);
}

}  // namespace
}  // namespace dialog
