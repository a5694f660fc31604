/// What the torture driver runs: operations, what they find and write to, and what they promise when something fails.
#ifndef TORTURE_BENCH_H
#define TORTURE_BENCH_H

#include <array>
#include <map>
#include <optional>

#include <accounts/fixture.h>
#include <dialog/fixture.h>
#include <installer/fixture.h>
#include <securetext/fixture.h>
#include <securetext/resources.h>
#include <toast/fixture.h>

namespace torture {

/// What the platform calls fail with.
inline constexpr long kSweepCode = 4321;

/// The parts of what an operation can touch.
enum Part : unsigned { kFirst = 1, kSecond = 2, kSizes = 4, kTexts = 8, kSeen = 16, kSecret = 96, kAll = 127 };
using Parts = std::array<std::string, 7>;

/// What a group of operations promises. Names of calls are without the A or W at their end.
struct Promise {
  std::vector<long> failures;             ///< results when a platform call fails
  std::map<std::string, long> numbers{};  ///< of calls that have a result of their own
  unsigned untouched = kAll;              ///< the parts that a failure leaves as they were
  unsigned varying = 0;                   ///< the parts that a failed call may change although all ends well
  bool throws = false;                    ///< out of memory is told by an exception, too
  std::string_view thrown{};              ///< and a platform call that fails by this one
  bool emptied = false;                   ///< a failure leaves a secret text, or none
  bool exitOfFailure = true;              ///< the exit record is there after a failure, too
};

struct LogOn : dialog::SecretForm {
  LogOn() {
    password = L"first";
    steps = {[this] { type(IDC_PASSWORD, L"hunter2"); }, [this] { press(IDOK); }};
  }
};

/// What the operations find and can write to.
class Bench : public installer::InstallerTest {
 public:
  template <class Char>
  Char* out() {
    return reinterpret_cast<Char*>(first.data());
  }
  template <class Char>
  Char* other() {
    return reinterpret_cast<Char*>(second.data());
  }
  template <class Char>
  auto& texts() {
    return std::get<std::array<std::basic_string<Char>, 2>>(texts_);
  }
  void makeTrees() const {
    for (const std::wstring& below :
         {installer::kMerged + L"sub\\deep\\c", installer::kMerged + L"a", installer::kShared + L"b",
          std::wstring(L"outside\\kept"), std::wstring(L"Product\\Resources\\keep")}) {
      makeFile(below);
    }
  }
  bool keeps() const { return there(L"outside\\kept") && there(L"Product\\Resources\\keep"); }
  MSIHANDLE install() const { return session->handle; }
  VL::Framework::ITXToastManager* makeManager() {
    managers.push_back(nullptr);  // also one that is not made wants its end
    return managers.back() = VL::Framework::vlCreateToastManager(L"first", secstring(99, L'x'), true);
  }
  long deleteManager() {
    auto* const manager = managers.back();
    managers.pop_back();
    VL::Framework::vlDeleteToastManager(manager);
    return 0;
  }

  support::GuardedBuffer<BYTE> first{16384}, second{256};
  DWORD size, otherSize;
  int count;
  void* sid = nullptr;
  bool isOnHeap = false;  ///< the SID comes from the platform's heap
  alignas(DWORD) BYTE known[16] = {1, 2, 0, 0, 0, 0, 0, 5, 32, 0, 0, 0, 32, 2, 0, 0};  ///< a SID
  HANDLE token = nullptr;
  SAFEARRAY* array = nullptr;
  BSTR string = nullptr;
  std::vector<VL::Framework::ITXToastManager*> managers;
  std::optional<CSecStr> wide;
  std::optional<CSecStrA> narrow;
  std::optional<CSecStrList> list;
  std::optional<LogOn> dialog;

 protected:
  void SetUp() override {
    InstallerTest::SetUp();
    toast::fake = std::make_unique<toast::Fake>();
    toast::fake->result = S_OK;
    managers.reserve(2);
  }
  void prepare();
  Parts parts(const std::string& seen) const;
  void release();

  securetext::WatchedManager memory;

 private:
  std::tuple<std::array<std::string, 2>, std::array<std::wstring, 2>> texts_;
};

/// One operation.
struct Row {
  std::string name;  ///< an exported function or a class, and what is done with it
  const Promise* promise;
  std::string decisive;  ///< the platform calls that can change the result by failing once
  const wchar_t* exit;   ///< how the last record ends: $ is the function, %d, %x or %b the result; empty: not promised
  std::function<long(Bench&)> call;
  std::function<std::string(Bench&)> observe = {};  ///< what it did outside the bench
  std::function<void(Bench&)> prepare = {};

  std::string function() const { return name.substr(0, name.find(' ')); }
};

inline void PrintTo(const Row& row, std::ostream* out) {
  *out << row.name;
}

std::vector<Row> flatRows();
std::vector<Row> classRows();

}  // namespace torture

#endif
