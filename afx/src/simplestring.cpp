#include <vlafx/simplestring.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <utility>

#include <vlafx/exceptions.h>

#include "textlength.h"

namespace {

class HeapManager final : public IStringManager {
 public:
  // By malloc: strings come and go all the time, and operator new without exceptions takes half as long again.
  void* Allocate(std::size_t bytes) override { return std::malloc(bytes); }
  void Free(void* block, std::size_t) override { std::free(block); }
};

constinit HeapManager heap;
constinit std::atomic<IStringManager*> current = &heap;

// Without virtual calls where the manager is the heap, as it nearly always is.
void* allocateFrom(IStringManager* manager, std::size_t bytes) {
  return manager == &heap ? heap.Allocate(bytes) : manager->Allocate(bytes);
}
void giveBackTo(IStringManager* manager, void* block, std::size_t bytes) {
  manager == &heap ? heap.Free(block, bytes) : manager->Free(block, bytes);
}

template <class Char>
constexpr std::uint64_t blockBytes(std::uint64_t capacity) {
  return sizeof(CStringData) + (capacity + 1) * sizeof(Char);
}

template <class Char>
Char* characters(CStringData* block) {
  return static_cast<Char*>(block->data());
}

}  // namespace

IStringManager* AfxSetStringManager(IStringManager* manager) {
  return current.exchange(manager != nullptr ? manager : &heap);
}

IStringManager* AfxGetStringManager() {
  return current.load(std::memory_order_relaxed);
}

template <class Char>
int CSimpleStringT<Char>::measure() const noexcept {
  const int capacity = GetAllocLength();
  const PCXSTR end = std::char_traits<Char>::find(m_pszData, static_cast<std::size_t>(capacity), Char());
  return end != nullptr ? static_cast<int>(end - m_pszData) : capacity;
}

template <class Char>
void CSimpleStringT<Char>::refuse() {
  AfxThrowInvalidArgException();
}

template <class Char>
void CSimpleStringT<Char>::SetString(PCXSTR text) {
  store(text, vlafx::lengthOf(text));
}

template <class Char>
void CSimpleStringT<Char>::SetString(PCXSTR text, int length) {
  if (length < 0 || (text == nullptr && length != 0)) {
    AfxThrowInvalidArgException();
  }
  store(text, length);
}

// Expanded where it is used, as what it calls: most strings are stored once, and go.
template <class Char>
[[gnu::always_inline]] inline void CSimpleStringT<Char>::store(PCXSTR text, int length) {
  if (length > GetAllocLength()) {
    CStringData* const block = larger(length);
    std::memcpy(characters<Char>(block), text, static_cast<std::size_t>(length) * sizeof(Char));
    adopt(block);
  } else if (length != 0) {
    std::char_traits<Char>::move(m_pszData, text, static_cast<std::size_t>(length));
  }
  setLength(length);
}

template <class Char>
Char CSimpleStringT<Char>::GetAt(int index) const {
  if (index < 0 || index > GetLength()) {
    AfxThrowInvalidArgException();
  }
  return m_pszData[index];
}

template <class Char>
void CSimpleStringT<Char>::SetAt(int index, XCHAR character) {
  if (index < 0 || index >= GetLength()) {
    AfxThrowInvalidArgException();
  }
  m_pszData[index] = character;
}

template <class Char>
void CSimpleStringT<Char>::grow(int n) {
  if (n < 0) {
    AfxThrowInvalidArgException();
  }
  const int length = GetLength();
  CStringData* const block = larger(n);
  block->nDataLength = length;
  std::char_traits<Char>::copy(characters<Char>(block), m_pszData, static_cast<std::size_t>(length) + 1);
  adopt(block);
}

template <class Char>
[[gnu::always_inline]] inline CStringData* CSimpleStringT<Char>::larger(int n) const {
  // In unsigned 64-bit arithmetic, where no sum of two lengths overflows.
  constexpr std::uint64_t kMost = std::numeric_limits<int>::max();
  const auto present = static_cast<std::uint64_t>(GetAllocLength());
  std::uint64_t capacity = std::max(static_cast<std::uint64_t>(n), present + (present + 1) / 2);
  capacity = std::min((capacity + 7) & ~std::uint64_t{7}, kMost);
  const std::uint64_t bytes = blockBytes<Char>(capacity);
  IStringManager* const manager = header()->nRefs > 0 ? header()->pStringMgr : AfxGetStringManager();
  void* const block =
      std::in_range<std::size_t>(bytes) ? allocateFrom(manager, static_cast<std::size_t>(bytes)) : nullptr;
  if (block == nullptr) {
    AfxThrowMemoryException();
  }
  return new (block) CStringData{manager, 0, static_cast<int>(capacity), 1};
}

template <class Char>
void CSimpleStringT<Char>::adopt(CStringData* block) noexcept {
  CStringData* const former = header();
  m_pszData = characters<Char>(block);
  if (former->nRefs > 0) {
    giveBack(former);
  }
}

template <class Char>
void CSimpleStringT<Char>::giveBack(CStringData* block) noexcept {
  const auto capacity = static_cast<std::uint64_t>(block->nAllocLength);
  giveBackTo(block->pStringMgr, block, static_cast<std::size_t>(blockBytes<Char>(capacity)));
}

template class CSimpleStringT<char>;
template class CSimpleStringT<wchar_t>;
