#include <vlafx/stringmgr.h>

#include <atomic>
#include <new>

namespace {

class HeapManager final : public IStringManager {
 public:
  void* Allocate(std::size_t bytes) override { return ::operator new(bytes, std::nothrow); }
  void Free(void* block, std::size_t) override { ::operator delete(block); }
};

constinit HeapManager heap;
constinit std::atomic<IStringManager*> current = &heap;

}  // namespace

IStringManager* AfxSetStringManager(IStringManager* manager) {
  return current.exchange(manager != nullptr ? manager : &heap);
}

IStringManager* AfxGetStringManager() {
  return current.load(std::memory_order_relaxed);
}
