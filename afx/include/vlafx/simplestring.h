/// The buffer of a string: one pointer to the first character, with length, capacity and manager ahead of it.
#ifndef VLAFX_SIMPLESTRING_H
#define VLAFX_SIMPLESTRING_H

#include <vlafx/stringmgr.h>

/// A NUL-terminated text in a buffer of its own. Lengths are characters (`Char` units), signed 32-bit. An empty core
/// stands on a static empty buffer of allocated length 0. A core that grows moves its text to a block that is half as
/// large again at least, so that appending costs linear time; the block it leaves is released as it is, not wiped.
///
/// Throws CMemoryException* out of memory or beyond the largest length, CInvalidArgException* for arguments out of
/// range; the text stays as it was. For one thread at a time. Cores are not copied: text is, by its characters.
///
/// It exists for char and wchar_t: members that are not defined here come from the library.
template <class Char>
class CSimpleStringT {
 public:
  /// A character, and pointers to text that may be written and only read.
  using XCHAR = Char;
  using PXSTR = Char*;
  using PCXSTR = const Char*;

  /// Empty; no block yet.
  CSimpleStringT() noexcept : m_pszData(const_cast<PXSTR>(&kEmpty.terminator)) {}
  ~CSimpleStringT() {
    if (header()->nRefs > 0) {
      giveBack(header());
    }
  }
  CSimpleStringT(const CSimpleStringT&) = delete;
  CSimpleStringT& operator=(const CSimpleStringT&) = delete;

  /// Length and allocated length, without the terminator.
  int GetLength() const noexcept { return header()->nDataLength; }
  int GetAllocLength() const noexcept { return header()->nAllocLength; }
  bool IsEmpty() const noexcept { return GetLength() == 0; }
  /// The characters, for reading.
  PCXSTR GetString() const noexcept { return m_pszData; }
  operator PCXSTR() const noexcept { return m_pszData; }

  /// The characters, writable up to the allocated length. Never moves them.
  PXSTR GetBuffer() noexcept { return m_pszData; }
  /// The same with an allocated length of at least `n`; text and length stay. Throws CInvalidArgException* below 0.
  PXSTR GetBuffer(int n) {
    if (static_cast<unsigned>(n) > static_cast<unsigned>(GetAllocLength())) {  // a negative one also
      grow(n);
    }
    return m_pszData;
  }
  /// Sets the length, -1 to measure it, and terminates the text. The buffer stays. Throws CInvalidArgException* for a
  /// length that does not fit.
  void ReleaseBuffer(int n = -1) { ReleaseBufferSetLength(n != -1 ? n : measure()); }
  void ReleaseBufferSetLength(int n) {
    if (static_cast<unsigned>(n) > static_cast<unsigned>(GetAllocLength())) {  // a negative one also
      refuse();
    }
    setLength(n);
  }

  /// Exchanges the buffers, each with its manager. Allocates nothing.
  void swap(CSimpleStringT& other) noexcept {
    const PXSTR data = m_pszData;
    m_pszData = other.m_pszData;
    other.m_pszData = data;
  }

  /// Copies the text up to its terminator; a null one counts as empty. `text` may lie in this buffer.
  VLAFX_API void SetString(PCXSTR text);
  /// Copies `length` characters; `text` may lie in this buffer. Throws CInvalidArgException* for a negative length, and
  /// for a null text with a length other than 0.
  VLAFX_API void SetString(PCXSTR text, int length);
  /// The character at an index from 0 to the length. Throws CInvalidArgException* elsewhere.
  VLAFX_API XCHAR GetAt(int index) const;
  /// The same below the length; the terminator is not written.
  VLAFX_API void SetAt(int index, XCHAR character);

 protected:
  /// What stands ahead of the characters.
  CStringData* header() const noexcept { return reinterpret_cast<CStringData*>(m_pszData) - 1; }
  /// Sets a length that fits and terminates the text. Writes nothing to the static empty buffer.
  void setLength(int n) noexcept {
    if (GetAllocLength() != 0) {
      header()->nDataLength = n;
      m_pszData[n] = Char();
    }
  }

 private:
  // What empty cores stand on: one for each library. In read-only memory: a write to it is a fault that shows.
  struct EmptyBuffer {
    CStringData header;
    Char terminator;
  };
  static constexpr EmptyBuffer kEmpty{{nullptr, 0, 0, -1}, Char()};
  static_assert(offsetof(EmptyBuffer, terminator) == sizeof(CStringData));

  void store(PCXSTR text, int length);
  VLAFX_API void grow(int n);
  /// The characters before the first NUL, at most the allocated length.
  VLAFX_API int measure() const noexcept;
  [[noreturn]] VLAFX_API static void refuse();
  /// Releases a block that no core has any more.
  VLAFX_API static void giveBack(CStringData* block) noexcept;
  /// A block for `n` characters at least that takes the place of the present one.
  CStringData* larger(int n) const;
  /// Makes `block` the core's own and gives the former one back.
  void adopt(CStringData* block) noexcept;

  PXSTR m_pszData;
};

#endif
