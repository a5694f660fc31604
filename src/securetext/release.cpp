// The release of automation buffers that hold secrets.
#include <cstdint>

#include <vlhostkit/securetext.h>
#include <vlhostkit/wipe.h>

#include "frame/log.h"

namespace {

void note(const wchar_t* format, auto... values) {
  txlogLog(vl::kTag, TXLOG_NOTE, format, values...);
}

// A 32-bit product, of all dimensions.
ULONG elementsOf(const SAFEARRAY& array, UINT dimensions) {
  ULONG elements = array.rgsabound[0].cElements;
  for (UINT i = 1; i < dimensions; ++i) {
    elements *= array.rgsabound[i].cElements;
  }
  return elements;
}

HRESULT destroyArray(SAFEARRAY* array, BOOL keep) {
  const UINT size = SafeArrayGetElemsize(array);
  const UINT dimensions = SafeArrayGetDim(array);
  note(L"vlSafeArrayDestroy sizeElem = %d, nDim = %d", size, dimensions);

  void* data = nullptr;
  HRESULT result = SafeArrayAccessData(array, &data);
  if (FAILED(result) || data == nullptr) {
    txlogLog(vl::kTag, TXLOG_ERROR, L"vlSafeArrayDestroy SafeArrayAccessData failed hr = %x", result);
    return result;
  }
  const ULONG elements = elementsOf(*array, dimensions);
  note(L"vlSafeArrayDestroy nbElem = %d", elements);
  VL::Framework::wipe(data, static_cast<ULONG>(elements * size));
  result = SafeArrayUnaccessData(array);
  if (FAILED(result)) {
    txlogLog(vl::kTag, TXLOG_ERROR, L"vlSafeArrayDestroy SafeArrayUnaccessData failed hr = %x", result);
    return result;
  }
  return keep == 0 ? SafeArrayDestroy(array) : result;
}

}  // namespace

HRESULT vlSafeArrayDestroy(SAFEARRAY* array, BOOL keep) {
  note(L"vlSafeArrayDestroy psa = %x", static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(array)));
  const HRESULT result = array == nullptr ? S_OK : destroyArray(array, keep);
  note(L"vlSafeArrayDestroy hr = %x", result);
  return result;
}

void vlSysFreeString(BSTR text, BOOL keep) {
  note(L"vlSysFreeString bstr = %s", text);
  if (text != nullptr) {
    VL::Framework::wipe(text, SysStringByteLen(text));
  }
  note(L"vlSysFreeString bstr = %s", text);
  if (keep == 0) {
    SysFreeString(text);
  }
  note(L"vlSysFreeString");
}
