// The process heap and the local heap.
#include <vlplatform/heap.h>

#include "blocks.h"
#include "gate.h"

using namespace vlplatform;

namespace {

// The address of something that is no block.
HANDLE processHeap() {
  static char heap;
  return &heap;
}

}  // namespace

HANDLE GetProcessHeap() {
  gate("GetProcessHeap");
  return processHeap();
}

LPVOID HeapAlloc(HANDLE heap, DWORD flags, SIZE_T bytes) {
  if (gate("HeapAlloc") != ERROR_SUCCESS || heap != processHeap()) {
    return nullptr;
  }
  return heapBlocks().allocate(bytes, (flags & HEAP_ZERO_MEMORY) != 0);
}

// Both releases do their work although a fault is planned, as FreeLibrary does it.

BOOL HeapFree(HANDLE heap, DWORD /*flags*/, LPVOID block) {
  const DWORD planned = gate("HeapFree");
  const bool released = heap == processHeap() && (block == nullptr || heapBlocks().release(block));
  return succeed(planned != ERROR_SUCCESS ? planned : released ? ERROR_SUCCESS : ERROR_INVALID_PARAMETER);
}

HLOCAL LocalAlloc(UINT flags, SIZE_T bytes) {
  if (gateFails("LocalAlloc")) {
    return nullptr;
  }
  if ((flags & ~LPTR) != 0) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return nullptr;
  }
  void* const block = localBlocks().allocate(bytes, (flags & LMEM_ZEROINIT) != 0);
  if (block == nullptr) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  }
  return block;
}

HLOCAL LocalFree(HLOCAL block) {
  const DWORD planned = gate("LocalFree");
  const bool released = block == nullptr || localBlocks().release(block);
  return succeed(planned != ERROR_SUCCESS ? planned
                 : released               ? ERROR_SUCCESS
                                          : ERROR_INVALID_HANDLE)
             ? nullptr
             : block;
}
