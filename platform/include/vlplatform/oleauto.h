/// OLE automation: arrays and strings. What they are stored in may hold secrets: it is overwritten with zeros before it
/// is released, over all of its length.
///
/// A planned fault gives null where the function gives an object, and where it gives an HRESULT the planned code if
/// that is a failure as an HRESULT, else E_FAIL. The functions without a failure of their own (sizes, lengths,
/// SysFreeString) are counted by the gate, and do their work also then.
#ifndef VLPLATFORM_OLEAUTO_H
#define VLPLATFORM_OLEAUTO_H

#include <vlplatform/basetypes.h>

using OLECHAR = wchar_t;
using BSTR = OLECHAR*;
using VARTYPE = USHORT;

/// The element types that SafeArrayCreate knows. Those that hold objects of other makers are not among them.
enum VARENUM : int {
  VT_EMPTY = 0,
  VT_I2 = 2,
  VT_I4 = 3,
  VT_R4 = 4,
  VT_R8 = 5,
  VT_CY = 6,
  VT_DATE = 7,
  VT_BSTR = 8,
  VT_ERROR = 10,
  VT_BOOL = 11,
  VT_VARIANT = 12,
  VT_I1 = 16,
  VT_UI1 = 17,
  VT_UI2 = 18,
  VT_UI4 = 19,
  VT_I8 = 20,
  VT_UI8 = 21,
  VT_INT = 22,
  VT_UINT = 23
};

/// SAFEARRAY::fFeatures
#define FADF_HAVEVARTYPE 0x0080
#define FADF_BSTR 0x0100
#define FADF_VARIANT 0x0800

#define S_OK (static_cast<HRESULT>(0))
#define E_UNEXPECTED (static_cast<HRESULT>(0x8000FFFFu))
#define E_FAIL (static_cast<HRESULT>(0x80004005u))
#define E_OUTOFMEMORY (static_cast<HRESULT>(0x8007000Eu))
#define E_INVALIDARG (static_cast<HRESULT>(0x80070057u))
#define DISP_E_ARRAYISLOCKED (static_cast<HRESULT>(0x8002000Du))
#define FAILED(hr) ((hr) < 0)

struct SAFEARRAYBOUND {
  ULONG cElements;
  LONG lLbound;
};

/// rgsabound has cDims entries, the last dimension first.
struct SAFEARRAY {
  USHORT cDims;
  USHORT fFeatures;
  ULONG cbElements;
  ULONG cLocks;
  PVOID pvData;
  SAFEARRAYBOUND rgsabound[1];
};

extern "C" {
/// `bounds` has `dimensions` entries, the first dimension first. All elements are zero. Null for an unknown type, no
/// dimension, no bounds, or without memory.
VLPLATFORM_API SAFEARRAY* SafeArrayCreate(VARTYPE type, UINT dimensions, SAFEARRAYBOUND* bounds);
/// Releases the strings in an array of VT_BSTR, and the array. The elements of VT_VARIANT are not looked at. A locked
/// array gives DISP_E_ARRAYISLOCKED and stays as it is, as it does with a planned fault; null gives S_OK.
VLPLATFORM_API HRESULT SafeArrayDestroy(SAFEARRAY* array);
VLPLATFORM_API UINT SafeArrayGetDim(SAFEARRAY* array);
/// In bytes. Both give 0 for null.
VLPLATFORM_API UINT SafeArrayGetElemsize(SAFEARRAY* array);
/// Locks the array; each success is balanced by SafeArrayUnaccessData, which gives E_UNEXPECTED for an array that is
/// not locked. Null pointers give E_INVALIDARG. A planned fault leaves `data` and the lock as they are.
VLPLATFORM_API HRESULT SafeArrayAccessData(SAFEARRAY* array, void** data);
VLPLATFORM_API HRESULT SafeArrayUnaccessData(SAFEARRAY* array);

/// A BSTR is a text with its length in bytes, a UINT, directly ahead of it, and a terminator that is not counted.
/// Null, without memory or for a null text.
VLPLATFORM_API BSTR SysAllocString(const OLECHAR* text);
/// `length` characters of `text`, or zeros if that is null; terminators among them are characters like others.
VLPLATFORM_API BSTR SysAllocStringLen(const OLECHAR* text, UINT length);
/// The same with bytes, which stay as they are.
VLPLATFORM_API BSTR SysAllocStringByteLen(LPCSTR bytes, UINT length);
VLPLATFORM_API void SysFreeString(BSTR text);
/// 0 for null.
VLPLATFORM_API UINT SysStringByteLen(BSTR text);
}

#endif
