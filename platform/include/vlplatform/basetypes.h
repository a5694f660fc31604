/// The platform's basic types, with its names and sizes. wchar_t is 4 bytes here.
#ifndef VLPLATFORM_BASETYPES_H
#define VLPLATFORM_BASETYPES_H

#include <cstddef>
#include <cstdint>

#include <vlhostkit/export.h>

#define WINAPI
#define CALLBACK
#define TRUE 1
#define FALSE 0
#define MAX_PATH 260

using BOOL = int;
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = std::uint32_t;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using SIZE_T = std::size_t;
using INT_PTR = std::intptr_t;
using UINT_PTR = std::uintptr_t;
using LONG_PTR = std::intptr_t;
using DWORD_PTR = std::uintptr_t;
using HRESULT = std::int32_t;
using WCHAR = wchar_t;
using LPSTR = char*;
using LPCSTR = const char*;
using LPWSTR = wchar_t*;
using LPCWSTR = const wchar_t*;
using LPVOID = void*;
using LPBYTE = BYTE*;
using LPDWORD = DWORD*;
using HANDLE = void*;
using BOOLEAN = BYTE;
using USHORT = std::uint16_t;
using ACCESS_MASK = DWORD;
using NTSTATUS = LONG;
using PVOID = void*;
using PUCHAR = BYTE*;
using PDWORD = DWORD*;
using PULONG = ULONG*;
using PHANDLE = HANDLE*;
using HINSTANCE = struct HINSTANCE__*;
using HMODULE = HINSTANCE;
using FARPROC = INT_PTR (*)();

union LARGE_INTEGER {
  __extension__ struct {
    DWORD LowPart;
    LONG HighPart;
  };
  struct {
    DWORD LowPart;
    LONG HighPart;
  } u;
  LONGLONG QuadPart;
};

union ULARGE_INTEGER {
  __extension__ struct {
    DWORD LowPart;
    DWORD HighPart;
  };
  struct {
    DWORD LowPart;
    DWORD HighPart;
  } u;
  ULONGLONG QuadPart;
};

#endif
