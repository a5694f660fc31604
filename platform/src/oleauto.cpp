#include <vlplatform/oleauto.h>

#include <vlhostkit/wipe.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <limits>
#include <new>

#include "gate.h"

namespace vlplatform {
namespace {

// Ahead of what callers hold. The last member lies where the platform has it: the length of a string, the element type
// of an array.
struct Block {
  std::size_t bytes;
  std::uint32_t unused;
  std::uint32_t tag;

  static Block* of(void* memory) { return static_cast<Block*>(memory) - 1; }
};
static_assert(sizeof(Block) % alignof(std::max_align_t) == 0);

// `bytes` zeros, or null. The platform's own memory: the gate makes it fail, and nothing else.
void* allocate(std::size_t bytes, std::uint32_t tag) {
  const OwnAllocations own;
  if (bytes > std::numeric_limits<std::size_t>::max() - sizeof(Block)) {
    return nullptr;
  }
  void* const memory = std::calloc(1, sizeof(Block) + bytes);
  return memory != nullptr ? new (memory) Block{bytes, 0, tag} + 1 : nullptr;
}

void release(void* memory) {
  Block* const block = Block::of(memory);
  VL::Framework::wipe(memory, block->bytes);
  std::free(block);
}

// Room for at least one whole terminator behind the last byte.
BSTR allocateString(std::size_t bytes, const void* source) {
  constexpr std::size_t kUnit = sizeof(OLECHAR);
  if (bytes > std::numeric_limits<UINT>::max() - 2 * kUnit) {
    return nullptr;
  }
  const std::size_t whole = (bytes + kUnit - 1) / kUnit * kUnit;
  void* const memory = allocate(whole + kUnit, static_cast<std::uint32_t>(bytes));
  if (memory == nullptr) {
    return nullptr;
  }
  if (source != nullptr) {
    std::memcpy(memory, source, bytes);
  }
  machine().counters().opened(Resource::automationString);
  return static_cast<BSTR>(memory);
}

void releaseString(BSTR text) {
  if (text != nullptr) {
    release(text);
    machine().counters().closed(Resource::automationString);
  }
}

ULONG elementSize(VARTYPE type) {
  switch (type) {
    case VT_I1:
    case VT_UI1:
      return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      return 2;
    case VT_I4:
    case VT_UI4:
    case VT_R4:
    case VT_ERROR:
    case VT_INT:
    case VT_UINT:
      return 4;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
      return 8;
    case VT_BSTR:
      return sizeof(BSTR);
    case VT_VARIANT:
      return 8 + 2 * sizeof(void*);
    default:
      return 0;
  }
}

USHORT features(VARTYPE type) {
  return static_cast<USHORT>(FADF_HAVEVARTYPE | (type == VT_BSTR ? FADF_BSTR : type == VT_VARIANT ? FADF_VARIANT : 0));
}

// False if it is more than memory has.
bool sizeOfData(ULONG element, UINT dimensions, const SAFEARRAYBOUND* bounds, std::size_t& bytes) {
  bytes = element;
  for (UINT i = 0; i < dimensions; ++i) {
    if (__builtin_mul_overflow(bytes, std::size_t{bounds[i].cElements}, &bytes)) {
      return false;
    }
  }
  return true;
}

SAFEARRAY* createArray(VARTYPE type, UINT dimensions, const SAFEARRAYBOUND* bounds) {
  const ULONG element = elementSize(type);
  std::size_t bytes = 0;
  if (element == 0 || dimensions == 0 || dimensions > std::numeric_limits<USHORT>::max() || bounds == nullptr ||
      !sizeOfData(element, dimensions, bounds, bytes)) {
    return nullptr;
  }
  void* const memory = allocate(sizeof(SAFEARRAY) + (dimensions - 1) * sizeof(SAFEARRAYBOUND), type);
  if (memory == nullptr) {
    return nullptr;
  }
  void* const data = allocate(bytes, 0);
  if (data == nullptr) {
    release(memory);
    return nullptr;
  }
  auto* const array = static_cast<SAFEARRAY*>(memory);
  array->cDims = static_cast<USHORT>(dimensions);
  array->fFeatures = features(type);
  array->cbElements = element;
  array->pvData = data;
  std::reverse_copy(bounds, bounds + dimensions, &array->rgsabound[0]);
  machine().counters().opened(Resource::safeArray);
  return array;
}

std::atomic_ref<ULONG> locks(SAFEARRAY* array) {
  return std::atomic_ref(array->cLocks);
}

HRESULT destroyArray(SAFEARRAY* array) {
  if (array == nullptr) {
    return S_OK;
  }
  if (locks(array) != 0) {
    return DISP_E_ARRAYISLOCKED;
  }
  if ((array->fFeatures & FADF_BSTR) != 0) {
    auto* const strings = static_cast<BSTR*>(array->pvData);
    std::for_each(strings, strings + Block::of(array->pvData)->bytes / sizeof(BSTR), releaseString);
  }
  release(array->pvData);
  release(array);
  machine().counters().closed(Resource::safeArray);
  return S_OK;
}

HRESULT lock(SAFEARRAY* array, void** data) {
  if (array == nullptr || data == nullptr) {
    return E_INVALIDARG;
  }
  constexpr ULONG kMostLocks = 0xFFFF;
  *data = nullptr;
  if (locks(array).fetch_add(1) >= kMostLocks) {
    locks(array).fetch_sub(1);
    return E_UNEXPECTED;
  }
  *data = array->pvData;
  return S_OK;
}

HRESULT unlock(SAFEARRAY* array) {
  if (array == nullptr) {
    return E_INVALIDARG;
  }
  ULONG held = locks(array);
  do {
    if (held == 0) {
      return E_UNEXPECTED;
    }
  } while (!locks(array).compare_exchange_weak(held, held - 1));
  return S_OK;
}

// What a planned fault gives, or S_OK to go on.
HRESULT gateResult(const char* function) {
  const DWORD code = gate(function);
  const auto result = static_cast<HRESULT>(code);
  return code == ERROR_SUCCESS || FAILED(result) ? result : E_FAIL;
}

}  // namespace
}  // namespace vlplatform

using namespace vlplatform;

SAFEARRAY* SafeArrayCreate(VARTYPE type, UINT dimensions, SAFEARRAYBOUND* bounds) {
  return gate("SafeArrayCreate") == ERROR_SUCCESS ? createArray(type, dimensions, bounds) : nullptr;
}

HRESULT SafeArrayDestroy(SAFEARRAY* array) {
  const HRESULT planned = gateResult("SafeArrayDestroy");
  return FAILED(planned) ? planned : destroyArray(array);
}

UINT SafeArrayGetDim(SAFEARRAY* array) {
  gate("SafeArrayGetDim");
  return array != nullptr ? array->cDims : 0;
}

UINT SafeArrayGetElemsize(SAFEARRAY* array) {
  gate("SafeArrayGetElemsize");
  return array != nullptr ? array->cbElements : 0;
}

HRESULT SafeArrayAccessData(SAFEARRAY* array, void** data) {
  const HRESULT planned = gateResult("SafeArrayAccessData");
  return FAILED(planned) ? planned : lock(array, data);
}

HRESULT SafeArrayUnaccessData(SAFEARRAY* array) {
  const HRESULT planned = gateResult("SafeArrayUnaccessData");
  return FAILED(planned) ? planned : unlock(array);
}

BSTR SysAllocString(const OLECHAR* text) {
  if (gate("SysAllocString") != ERROR_SUCCESS || text == nullptr) {
    return nullptr;
  }
  return allocateString(std::wcslen(text) * sizeof(OLECHAR), text);
}

BSTR SysAllocStringLen(const OLECHAR* text, UINT length) {
  if (gate("SysAllocStringLen") != ERROR_SUCCESS) {
    return nullptr;
  }
  return allocateString(std::size_t{length} * sizeof(OLECHAR), text);
}

BSTR SysAllocStringByteLen(LPCSTR bytes, UINT length) {
  return gate("SysAllocStringByteLen") == ERROR_SUCCESS ? allocateString(length, bytes) : nullptr;
}

void SysFreeString(BSTR text) {
  gate("SysFreeString");
  releaseString(text);
}

UINT SysStringByteLen(BSTR text) {
  gate("SysStringByteLen");
  return text != nullptr ? Block::of(text)->tag : 0;
}
