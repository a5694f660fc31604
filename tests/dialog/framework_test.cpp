// The framework's dialog: exchange, message maps, both ways to run, and exceptions of handlers.
#include <stdexcept>

#include "fixture.h"

namespace dialog {
namespace {

class Form : public Driven<CDialog> {
  DECLARE_DYNAMIC(Form)
  DECLARE_MESSAGE_MAP()

 public:
  using Driven::Driven;
  Form() : Driven(IDD_LOG_ON) {}

  CStringT<wchar_t> user;
  int field = IDC_USER;
  int most = 100;
  int clears = 0, changes = 0;
  Step onInit = [] {};
  bool* gone = nullptr;  ///< of one that ends itself with its window

 protected:
  BOOL OnInitDialog() override {
    onInit();
    begin();
    return Driven::OnInitDialog();
  }
  void DoDataExchange(CDataExchange* exchange) override {
    DDX_Text(exchange, field, user);
    DDV_MaxChars(exchange, user, most);
  }
  void PostNcDestroy() override {
    if (gone != nullptr) {
      *gone = true;
      delete this;
    }
  }
  void OnClear() { ++clears; }
  void OnUserChanged() { ++changes; }
  // NOLINTNEXTLINE(readability-convert-member-functions-to-static): called as a member
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
                  EXPECT_TRUE(form.OnCmdMsg(IDC_CLEAR, BN_CLICKED));
                  EXPECT_FALSE(form.OnCmdMsg(IDC_USER, BN_CLICKED));
                  PostMessageW(form.m_hWnd, WM_CLOSE, 0, 0);
                },
                // The close box posts its command behind what is posted already.
                [] {}, [] {}};
  EXPECT_EQ(form.DoModal(), IDCANCEL) << "by the base class's map";
  EXPECT_STREQ(form.GetRuntimeClass()->m_lpszClassName, "Form");
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
  Form missing(L"MISSING");
  EXPECT_EQ(missing.DoModal(), -1);
  EXPECT_FALSE(missing.Create(IDD_LOG_ON + 1));
}

TEST_F(Framework, ModelessDialogLivesAsLongAsItsWindow) {
  bool gone = false;
  auto* const form = new Form;
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
  }
  EXPECT_FALSE(IsWindow(window));
}

// Whatever is thrown and wherever: it cancels a modal dialog and leaves DoModal, and the next run knows nothing of it.
TEST_F(Framework, ExceptionsOfHandlers) {
  Form form;
  form.field = 4711;
  EXPECT_THROW(form.DoModal(), CInvalidArgException*) << "no such control";
  form.field = IDC_USER;
  form.onInit = [] { throw std::runtime_error("at the beginning"); };
  EXPECT_THROW(form.DoModal(), std::runtime_error);
  EXPECT_THROW(form.Create(IDD_LOG_ON), std::runtime_error);
  EXPECT_EQ(form.m_hWnd, nullptr);
  form.onInit = [] {};
  form.steps = {[] { AfxThrowMemoryException(); }, [] { throw 1; }};
  EXPECT_THROW(form.DoModal(), CMemoryException*);
  form.steps = {};
  EXPECT_EQ(form.DoModal(), 99);

  // Of a modeless one it ends in the handler.
  ASSERT_TRUE(form.Create(IDD_LOG_ON));
  form.steps = {[] { AfxThrowOleException(0); }};
  SendMessageW(form.m_hWnd, WM_APP, 0, 0);
  EXPECT_NE(form.m_hWnd, nullptr);
}

// Whatever OnInitDialog does to it: nothing is left of it, and an object that deletes itself is not touched again.
TEST_F(Framework, ModelessDialogThatEndsAtItsBeginning) {
  const std::function<void(Form&)> beginnings[] = {
      [](Form&) { throw std::runtime_error("at the beginning"); }, [](Form& form) { form.EndDialog(5); },
      [](Form& form) { form.DestroyWindow(), throw std::runtime_error("and then"); }};
  for (const auto& beginning : beginnings) {
    bool gone = false;
    auto* const form = new Form;
    form->gone = &gone;
    form->onInit = [&, form] { beginning(*form); };
    try {
      EXPECT_FALSE(form->Create(IDD_LOG_ON));
    } catch (const std::runtime_error&) {
    }
    EXPECT_TRUE(gone);
  }
}

TEST_F(Framework, ThreadThatIsAskedToQuit) {
  struct Waiting : CDialog {
    using CDialog::CDialog;
    BOOL OnInitDialog() override { return PostQuitMessage(7), CDialog::OnInitDialog(); }
  } waiting(L"NAMED");
  EXPECT_EQ(waiting.DoModal(), IDCANCEL);
  MSG message;
  EXPECT_FALSE(GetMessageW(&message, nullptr, 0, 0)) << "it is asked again";
  EXPECT_EQ(message.wParam, 7u);
}

}  // namespace
}  // namespace dialog
