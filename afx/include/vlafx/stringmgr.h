/// Where string cores get their memory.
#ifndef VLAFX_STRINGMGR_H
#define VLAFX_STRINGMGR_H

#include <cstddef>

#include <vlhostkit/export.h>

/// A memory manager of string cores. Each buffer remembers the one it came from. Blocks are never resized in place.
class IStringManager {
 public:
  /// Null out of memory.
  virtual void* Allocate(std::size_t bytes) = 0;
  /// `block` and `bytes` are those of Allocate. The core does not wipe; its owner has done so where the text was
  /// secret.
  virtual void Free(void* block, std::size_t bytes) = 0;

 protected:
  ~IStringManager() = default;
};

/// The manager that newly made buffers come from: the heap at first. Null gives the heap again. Returns the former one.
/// Set before other threads use strings; for tests that look at what is given back, and for callers with a heap of
/// their own.
VLAFX_API IStringManager* AfxSetStringManager(IStringManager* manager);
VLAFX_API IStringManager* AfxGetStringManager();

/// What stands directly ahead of the first character of every buffer.
struct CStringData {
  IStringManager* pStringMgr;  ///< where the buffer came from
  int nDataLength;             ///< characters of text, without the terminator
  int nAllocLength;            ///< characters the buffer can hold, without the terminator: the storage holds one more
  long nRefs;  ///< holders of the buffer; -1 for the static empty buffer, which is never written or released

  /// The first character.
  void* data() { return this + 1; }
};

#endif
