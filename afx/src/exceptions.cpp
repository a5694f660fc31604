#include <vlafx/exceptions.h>

#include <new>

#include "forever.h"

void CException::Delete() {
  delete this;
}

void CMemoryException::Delete() {}

COleException::~COleException() = default;

void CInvalidArgException::Delete() {}

void CUserException::Delete() {}

void AfxThrowMemoryException() {
  throw &vlafx::forever<CMemoryException>();
}

void AfxThrowOleException(HRESULT code) {
  auto* const exception = new (std::nothrow) COleException(code);
  if (exception == nullptr) {
    AfxThrowMemoryException();
  }
  throw exception;
}

void AfxThrowInvalidArgException() {
  throw &vlafx::forever<CInvalidArgException>();
}

void AfxThrowUserException() {
  throw &vlafx::forever<CUserException>();
}
