/// The runtime's bounded functions, with the platform's rules. Sizes count characters for wcs and str functions, bytes
/// for mem functions, both with room for the terminator where there is one.
///
/// They return 0, or an error number that errno has as well:
///   EINVAL  a null pointer, a size of 0, a text without terminator
///   ERANGE  the target is too small
///   EILSEQ  the text does not convert
/// On failure a text that is the target is made empty, and memcpy_s zeroes its target over the whole size; memmove_s
/// leaves it. EINVAL and ERANGE are reported to the handler of _set_invalid_parameter_handler before the function
/// returns; without one it just returns. None leaves a copy of the text in memory of its own.
///
/// A planned fault acts as an invalid argument: EINVAL, or -1 from the formatters.
#ifndef VLPLATFORM_CRT_H
#define VLPLATFORM_CRT_H

#include <cstdarg>
#include <cstddef>
#include <cstdint>

#include <vlhostkit/export.h>

using errno_t = int;
using rsize_t = std::size_t;

using _invalid_parameter_handler = void (*)(const wchar_t* expression, const wchar_t* function, const wchar_t* file,
                                            unsigned line, std::uintptr_t reserved);

extern "C" {
VLPLATFORM_API errno_t wcscpy_s(wchar_t* target, rsize_t size, const wchar_t* source);
VLPLATFORM_API errno_t strcpy_s(char* target, rsize_t size, const char* source);
/// Nothing to copy (`count` 0) is a success, whatever the pointers are.
VLPLATFORM_API errno_t memcpy_s(void* target, rsize_t size, const void* source, rsize_t count);
VLPLATFORM_API errno_t memmove_s(void* target, rsize_t size, const void* source, rsize_t count);
/// Converts to UTF-8 as many whole characters as have at most `count` bytes, whatever the C locale is. A null `target`
/// of size 0 asks for the size of all of it. `converted` (may be null) receives the bytes with the terminator, 0 on
/// failure. Surrogates and what lies beyond U+10FFFF give EILSEQ.
VLPLATFORM_API errno_t wcstombs_s(std::size_t* converted, char* target, rsize_t size, const wchar_t* source,
                                  rsize_t count);

/// The platform's wide formats, "%[-+ 0#][width][.precision][length]conversion", width and precision '*' or digits:
///   s c         text, a character: wide, or narrow (UTF-8) with h; a null text prints "(null)"
///   S C         the same, narrow, or wide with l or w
///   d i u x X o int; hh h 8 and 16 bits; l I32 32 bits, as long is there; ll I64 64 bits; I j z t pointer size
///   p           16 upper-case hexadecimal digits
///   e f g a     double, also as capitals; %a has 13 digits unless told; with L a long double, printed as a double
/// '0' pads texts as well. Precision cuts a text, in characters of the output, and no more of it is read; of narrow
/// text, bytes that are no text print U+FFFD. %n and everything else is no format: EINVAL, and -1 as the result.
///
/// _vscwprintf gives the characters needed without the terminator; vswprintf_s and swprintf_s store them with it. Where
/// the buffer is too small, or on any other failure, what was written of it is wiped and the buffer empty. Texts go
/// from argument to buffer; the memory that integers are made in is wiped (floating numbers are the C library's work).
VLPLATFORM_API int _vscwprintf(const wchar_t* format, std::va_list arguments);
VLPLATFORM_API int vswprintf_s(wchar_t* buffer, std::size_t size, const wchar_t* format, std::va_list arguments);
VLPLATFORM_API int swprintf_s(wchar_t* buffer, std::size_t size, const wchar_t* format, ...);

/// Calls the handler, if there is one. This and the next are counted by the fault gate, and can't fail.
VLPLATFORM_API void _invalid_parameter(const wchar_t* expression, const wchar_t* function, const wchar_t* file,
                                       unsigned line, std::uintptr_t reserved);
/// Sets the process's handler and returns the one before. The functions above tell it no details (null, 0): it may
/// return, end the process or throw.
VLPLATFORM_API _invalid_parameter_handler _set_invalid_parameter_handler(_invalid_parameter_handler handler);
}

#endif
