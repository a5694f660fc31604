#include "toast/toastmanager.h"

#include <cstring>
#include <functional>
#include <map>
#include <stdexcept>
#include <system_error>
#include <utility>

#include <tx.cext/converter.h>

#include "frame/callframe.h"

namespace VL::Framework {
namespace {

// A type of this file, so that the map's members are of this file too, and not exported as the standard library's.
// NOLINTNEXTLINE(modernize-use-transparent-functors): its call operator is a template, and would be exported
struct WorkerOrder : std::less<std::thread::id> {};

// A worker that was not joined. Thread ids are used again, also between a join and the removal of its entry, so each
// entry has a number of its own. Only the platform's id can be the target of a thread message.
struct Worker {
  std::uint64_t registration;
  DWORD threadId;
};

std::mutex g_threadIdsMutex;
std::map<std::thread::id, Worker, WorkerOrder> g_threadIds;
std::uint64_t g_lastRegistration = 0;

secstring widened(const char* text) {
  secstring wide;
  CConverter::charToString(text, static_cast<int>(std::strlen(text)), wide);
  return wide;
}

HRESULT display(ITXToastNotification& notification, std::mutex& mutex, int* reason) {
  const std::lock_guard lock(mutex);
  return notification.Display(reason);
}

}  // namespace

TXToastManager::TXToastManager(std::unique_ptr<ITXToastNotification> pNotification)
    : m_pNotification(std::move(pNotification)) {
  const vl::CallFrame frame(vl::kTag, L"TXToastManager::TXToastManager",
                            vl::ExitPlain(L"TXToastManager::TXToastManager"));
  m_dwCreatorThreadId = GetCurrentThreadId();
}

TXToastManager::~TXToastManager() {
  const vl::CallFrame frame(vl::kTag, L"TXToastManager::~TXToastManager",
                            vl::ExitPlain(L"TXToastManager::~TXToastManager"));
  if (m_pThread != nullptr) {
    try {
      HideToast();
    } catch (...) {
      // The toast then ends by itself: what matters is that the worker is waited for.
    }
    JoinToastThread();
    m_pThread.reset();
  }
  m_pNotification.reset();
}

int TXToastManager::ShowToast() {
  int reason = 0;
  const vl::CallFrame frame(vl::kTag, L"TXToastManager::ShowToast",
                            vl::ExitWith(L"TXToastManager::ShowToast : returns %d", reason));
  const HRESULT result = display(*m_pNotification, m_mutex, &reason);
  if (FAILED(result)) {
    txlogLog(vl::kTag, TXLOG_ERROR, L"TXToastManager::ShowToast : Display failed (0x%x)", result);
  }
  return reason;
}

void TXToastManager::ShowToastThread(ITXToastNotification* pNotification, std::mutex* pMutex,
                                     std::uint64_t registration) try {
  const vl::CallFrame frame(vl::kTag, L"TXToastManager::ShowToastThread",
                            vl::ExitPlain(L"TXToastManager::ShowToastThread"));
  int reason = 0;
  {
    // Before the display, so that a hide request that finds the toast displaying also finds the id.
    const std::lock_guard lock(g_threadIdsMutex);
    g_threadIds.insert_or_assign(std::this_thread::get_id(), Worker{registration, GetCurrentThreadId()});
  }
  const HRESULT result = display(*pNotification, *pMutex, &reason);
  if (FAILED(result)) {
    txlogLog(vl::kTag, TXLOG_ERROR, L"TXToastManager::ShowToastThread : Display failed (0x%x)", result);
  }
  txlogLog(vl::kTag, TXLOG_TRACE, L"TXToastManager::ShowToastThread : exit reason = %d", reason);
} catch (const std::exception&) {
  // Nobody is there to catch it: out of memory, or what a sibling's display threw.
  txlogLog(vl::kTag, TXLOG_ERROR, L"TXToastManager::ShowToastThread : ended by an exception");
}

bool TXToastManager::CreateToastThread() {
  int result = 0;
  const vl::CallFrame frame(vl::kTag, L"TXToastManager::CreateToastThread",
                            vl::ExitWith(L"TXToastManager::CreateToastThread : returns %d", result));
  // There is room for one, and a thread object must not end before its thread is joined.
  if (m_pThread != nullptr && m_pThread->joinable()) {
    txlogLog(vl::kTag, TXLOG_ERROR, L"TXToastManager::CreateToastThread : there is a thread already.");
    return false;
  }
  try {
    {
      // The worker can't register, and so not display, before it is known here who it is.
      const std::lock_guard lock(g_threadIdsMutex);
      const std::uint64_t registration = g_lastRegistration + 1;
      m_pThread = std::make_unique<std::thread>(&TXToastManager::ShowToastThread, m_pNotification.get(), &m_mutex,
                                                registration);
      g_lastRegistration = registration;
      m_registration = registration;
      m_workerId = m_pThread->get_id();
    }
    txlogLog(vl::kTag, TXLOG_NOTE, L"TXToastManager::CreateToastThread : thread created.");
    result = 1;
  } catch (const std::system_error& error) {
    txlogLog(vl::kTag, TXLOG_ERROR, L"TXToastManager::CreateToastThread : creating thread failed with error %d (%s).",
             error.code().value(), widened(error.what()).c_str());
  }
  return result != 0;
}

// As std::map::at, whose exception has another text in each standard library; this one is in the log.
DWORD TXToastManager::target() const {
  const std::lock_guard lock(g_threadIdsMutex);
  if (m_registration == 0) {
    return m_dwCreatorThreadId;
  }
  const auto found = g_threadIds.find(m_workerId);
  if (found == g_threadIds.end() || found->second.registration != m_registration) {
    throw std::out_of_range("invalid map<K, T> key");
  }
  return found->second.threadId;
}

bool TXToastManager::HideToast() {
  int result = 0;
  const vl::CallFrame frame(vl::kTag, L"TXToastManager::HideToast",
                            vl::ExitWith(L"TXToastManager::HideToast : returns %d", result));
  if (m_pNotification == nullptr || !m_pNotification->IsDisplaying()) {
    return false;
  }
  try {
    // Whether it arrives is not known here in any case.
    PostThreadMessageW(target(), WM_HIDE_TOAST, 0, 0);
    result = 1;
  } catch (const std::out_of_range& error) {
    txlogLog(vl::kTag, TXLOG_ERROR, L"TXToastManager::HideToast : Exception getting thread id (%s) ",
             widened(error.what()).c_str());
  }
  return result != 0;
}

bool TXToastManager::JoinToastThread() {
  int result = 0;
  const vl::CallFrame frame(vl::kTag, L"TXToastManager::JoinToastThread",
                            vl::ExitWith(L"TXToastManager::JoinToastThread : returns %d", result));
  if (m_pThread == nullptr || !m_pThread->joinable()) {
    return false;
  }
  m_pThread->join();
  const std::lock_guard lock(g_threadIdsMutex);
  if (const auto found = g_threadIds.find(m_workerId);
      found != g_threadIds.end() && found->second.registration == m_registration) {
    g_threadIds.erase(found);
  }
  result = 1;  // NOLINT(clang-analyzer-deadcode.DeadStores): the frame shows it
  return true;
}

}  // namespace VL::Framework
