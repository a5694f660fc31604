#include <vlafx/stringmgr.h>

#include <atomic>
#include <cstdlib>

namespace {

class HeapManager final : public IStringManager {
 public:
  // By malloc: strings come and go all the time, and operator new without exceptions takes half as long again.
  void* Allocate(std::size_t bytes) override { return std::malloc(bytes); }
  void Free(void* block, std::size_t) override { std::free(block); }
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
