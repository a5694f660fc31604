#include <vlhostkit/toast.h>

#include <atomic>
#include <memory>

#include "frame/callframe.h"
#include "frame/handle.h"
#include "toast/sibling.h"
#include "toast/toastmanager.h"

namespace VL::Framework {
namespace {

// What the last create got, also if that was nothing. A delete gives back one reference on it, and leaves it here.
constinit std::atomic<HMODULE> g_hToastModule{nullptr};

// Lets go of a text as its destructor would, at a time of our choosing: the caller's destructor may run much later.
class ReleasedText {
 public:
  explicit ReleasedText(secstring& text) : text_(text) {}
  ~ReleasedText() {
    text_.clear();
    text_.shrink_to_fit();
  }
  ReleasedText(const ReleasedText&) = delete;
  ReleasedText& operator=(const ReleasedText&) = delete;

 private:
  secstring& text_;
};

std::unique_ptr<ITXToastNotification> createNotification(const secstring& first, const secstring& second, bool flag) {
  const HMODULE sibling = LoadLibraryW(vl::kToastSibling);
  g_hToastModule = sibling;
  if (sibling == nullptr) {
    txlogLog(vl::kTag, TXLOG_ERROR,
             L"vlCreateToastManager: LoadLibrary(tx.hostkit.winrt.dll) failed with error code 0x%x", GetLastError());
    return nullptr;
  }
  txlogLog(vl::kTag, TXLOG_NOTE, L"vlCreateToastManager: LoadLibrary(tx.hostkit.winrt.dll) succeeded");
  const auto create = vl::entryPoint<vl::CreateToastNotificationFunction>(sibling, "CreateToastNotification");
  if (create == nullptr) {
    txlogLog(vl::kTag, TXLOG_ERROR,
             L"vlCreateToastManager: GetProcAddress(CreateToastNotification) failed with error code 0x%x",
             GetLastError());
    return nullptr;
  }
  txlogLog(vl::kTag, TXLOG_NOTE, L"vlCreateToastManager: loading CreateToastNotification succeeded");
  return std::unique_ptr<ITXToastNotification>(create(first, second, flag));
}

}  // namespace

ITXToastManager* vlCreateToastManager(secstring strFirst, secstring strSecond, bool bFlag) {
  const ReleasedText first(strFirst);
  const ReleasedText second(strSecond);
  const vl::CallFrame frame(vl::kTag, L"vlCreateToastManager", vl::ExitPlain(L"vlCreateToastManager"));
  auto notification = createNotification(strFirst, strSecond, bFlag);
  return notification != nullptr ? new TXToastManager(std::move(notification)) : nullptr;
}

void vlDeleteToastManager(ITXToastManager* pManager) {
  const vl::CallFrame frame(vl::kTag, L"vlDeleteToastManager", vl::ExitPlain(L"vlDeleteToastManager"));
  delete pManager;
  // After the manager, whose end runs code of the sibling.
  if (const HMODULE sibling = g_hToastModule) {
    FreeLibrary(sibling);
  }
}

}  // namespace VL::Framework
