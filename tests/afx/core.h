/// What the tests of the string core share.
#ifndef TESTS_AFX_CORE_H
#define TESTS_AFX_CORE_H

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include <vlafx/exceptions.h>
#include <vlafx/string.h>

namespace afxtest {

using CharTypes = testing::Types<char, wchar_t>;

/// An ASCII text in either width.
template <class Char>
std::basic_string<Char> text(std::string_view ascii) {
  return {ascii.begin(), ascii.end()};
}
template <class Char>
std::basic_string<Char> text(const CSimpleStringT<Char>& core) {
  return {core.GetString(), static_cast<std::size_t>(core.GetLength())};
}

/// Whether `call` throws a framework exception of this type; ends it.
template <class Exception, class Call>
bool throws(Call call) {
  try {
    call();
  } catch (Exception* exception) {
    exception->Delete();
    return true;
  }
  return false;
}

/// The current manager while it lives; asserts that all blocks came back. `onAllocate` may throw or give false, for
/// out of memory; `onFree` looks at a block that comes back.
class HookedManager final : public IStringManager {
 public:
  HookedManager() : former_(AfxSetStringManager(this)) {}
  ~HookedManager() {
    EXPECT_EQ(AfxSetStringManager(former_), this);
    EXPECT_EQ(open, 0);
  }
  HookedManager(const HookedManager&) = delete;
  HookedManager& operator=(const HookedManager&) = delete;

  void* Allocate(std::size_t bytes) override {
    requests.push_back(bytes);
    if (!onAllocate()) {
      return nullptr;
    }
    ++open;
    latest = ::operator new(bytes);
    return latest;
  }
  void Free(void* block, std::size_t bytes) override {
    --open;
    onFree(block, bytes);
    ::operator delete(block);
  }

  std::function<bool()> onAllocate = [] { return true; };
  std::function<void(const void*, std::size_t)> onFree = [](const void*, std::size_t) {};
  std::vector<std::size_t> requests;
  void* latest = nullptr;
  int open = 0;

 private:
  IStringManager* former_;
};

}  // namespace afxtest

#endif
