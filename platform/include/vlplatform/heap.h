/// Blocks of the process heap and of the local heap. A block goes back to the heap it came from: other pointers are
/// refused.
#ifndef VLPLATFORM_HEAP_H
#define VLPLATFORM_HEAP_H

#include <vlplatform/basetypes.h>

#define HEAP_ZERO_MEMORY 0x8u
#define LMEM_FIXED 0x0u
#define LMEM_ZEROINIT 0x40u
#define LPTR (LMEM_FIXED | LMEM_ZEROINIT)

using HLOCAL = HANDLE;

extern "C" {
/// Can't fail; the handle is not closed.
VLPLATFORM_API HANDLE GetProcessHeap();
/// Null on failure. As on the platform, the last-error value is not set, not by a planned fault either. Memory that
/// was not asked to be zero holds a pattern.
VLPLATFORM_API LPVOID HeapAlloc(HANDLE heap, DWORD flags, SIZE_T bytes);
/// A null block is a success. ERROR_INVALID_PARAMETER for what is no block of this heap.
VLPLATFORM_API BOOL HeapFree(HANDLE heap, DWORD flags, LPVOID block);

/// ERROR_NOT_ENOUGH_MEMORY on failure. Only fixed blocks: ERROR_INVALID_PARAMETER for other flags.
VLPLATFORM_API HLOCAL LocalAlloc(UINT flags, SIZE_T bytes);
/// Null on success, and for null; otherwise the block, with ERROR_INVALID_HANDLE.
VLPLATFORM_API HLOCAL LocalFree(HLOCAL block);
}

#endif
