/// The framework's exceptions. They are thrown as pointers and ended with Delete():
///
///     try { ... } catch (COleException* failure) { HRESULT hr = failure->m_sc; failure->Delete(); }
#ifndef VLAFX_EXCEPTIONS_H
#define VLAFX_EXCEPTIONS_H

#include <vlafx/object.h>
#include <vlhostkit/types.h>

/// The base of all thrown pointers.
class VLAFX_API CException : public CObject {
 public:
  /// Ends the exception; the pointer is not used afterwards. A preallocated one stays as it is.
  virtual void Delete();

 protected:
  CException() = default;
  ~CException() override = default;
};

/// Out of memory. One preallocated object, which is there until the process ends: throwing it allocates no memory for
/// it.
class VLAFX_API CMemoryException : public CException {
 public:
  void Delete() override;
};

/// A failed HRESULT.
class VLAFX_API COleException : public CException {
 public:
  /// With `code` as m_sc.
  explicit COleException(HRESULT code) : m_sc(code) {}
  ~COleException() override;

  HRESULT m_sc;  ///< what failed
};

/// An argument that the callee cannot work with. Preallocated.
class VLAFX_API CInvalidArgException : public CException {
 public:
  void Delete() override;
};

/// What the user entered is not what the program can use; ends an exchange (CDataExchange::Fail). Preallocated.
class VLAFX_API CUserException : public CException {
 public:
  void Delete() override;
};

/// Throw a CMemoryException*, a COleException* with `code` (a CMemoryException* where even that cannot be allocated),
/// a CInvalidArgException*, a CUserException*.
[[noreturn]] VLAFX_API void AfxThrowMemoryException();
[[noreturn]] VLAFX_API void AfxThrowOleException(HRESULT code);
[[noreturn]] VLAFX_API void AfxThrowInvalidArgException();
[[noreturn]] VLAFX_API void AfxThrowUserException();

namespace msl::utilities {

/// Why checked arithmetic gave up.
enum SafeIntError { SafeIntNoError = 0, SafeIntArithmeticOverflow = 1 };

/// Checked size arithmetic that went out of range. Thrown by value.
class VLAFX_API SafeIntException {
 public:
  /// With `code` as m_code.
  explicit SafeIntException(SafeIntError code = SafeIntNoError) : m_code(code) {}
  SafeIntError m_code;  ///< why
};

}  // namespace msl::utilities

#endif
