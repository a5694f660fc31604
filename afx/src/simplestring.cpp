#include <vlafx/simplestring.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <utility>

#include <vlafx/exceptions.h>

namespace {

// Common to all empty cores, of both widths. In read-only memory: a write to it is a fault that shows.
struct EmptyBuffer {
  CStringData header;
  wchar_t terminator;
};
constexpr EmptyBuffer kEmpty{{nullptr, 0, 0, -1}, L'\0'};
static_assert(offsetof(EmptyBuffer, terminator) == sizeof(CStringData));

template <class Char>
constexpr std::uint64_t blockBytes(std::uint64_t capacity) {
  return sizeof(CStringData) + (capacity + 1) * sizeof(Char);
}

template <class Char>
Char* characters(const CStringData* header) {
  return static_cast<Char*>(const_cast<CStringData*>(header)->data());
}

}  // namespace

template <class Char>
CSimpleStringT<Char>::CSimpleStringT() noexcept : m_pszData(characters<Char>(&kEmpty.header)) {}

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
void CSimpleStringT<Char>::SetString(PCXSTR text, int length) {
  if (length < 0 || (text == nullptr && length != 0)) {
    AfxThrowInvalidArgException();
  }
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
CStringData* CSimpleStringT<Char>::larger(int n) const {
  // In unsigned 64-bit arithmetic, where no sum of two lengths overflows.
  constexpr std::uint64_t kMost = std::numeric_limits<int>::max();
  const auto present = static_cast<std::uint64_t>(GetAllocLength());
  std::uint64_t capacity = std::max(static_cast<std::uint64_t>(n), present + (present + 1) / 2);
  capacity = std::min((capacity + 7) & ~std::uint64_t{7}, kMost);
  const std::uint64_t bytes = blockBytes<Char>(capacity);
  IStringManager* const manager = header()->nRefs > 0 ? header()->pStringMgr : AfxGetStringManager();
  void* const block = std::in_range<std::size_t>(bytes) ? manager->Allocate(static_cast<std::size_t>(bytes)) : nullptr;
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
  block->pStringMgr->Free(block, static_cast<std::size_t>(blockBytes<Char>(capacity)));
}

template class CSimpleStringT<char>;
template class CSimpleStringT<wchar_t>;
