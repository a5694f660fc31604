// Thrown pointers, across the border of the library.
#include <string>

#include "core.h"

#ifndef _WIN32
#include <support/allocfault.h>
#endif

namespace afxtest {
namespace {

TEST(ExceptionsTest, ArriveByTheirTypeAndByTheirBase) {
  EXPECT_TRUE(throws<CMemoryException>(AfxThrowMemoryException));
  EXPECT_TRUE(throws<CInvalidArgException>(AfxThrowInvalidArgException));
  EXPECT_TRUE(throws<CException>(AfxThrowMemoryException));
  EXPECT_TRUE(throws<CException>(AfxThrowInvalidArgException));
  try {
    AfxThrowOleException(E_INVALIDARG);
    FAIL();
  } catch (CMemoryException*) {
    FAIL() << "taken for another type";
  } catch (CException* exception) {
    auto* const ole = dynamic_cast<COleException*>(exception);
    ASSERT_NE(ole, nullptr);
    EXPECT_EQ(ole->m_sc, E_INVALIDARG);
    exception->Delete();
  }
}

TEST(ExceptionsTest, PreallocatedOnesOutliveTheirDelete) {
  CMemoryException* thrown[2] = {};
  for (CMemoryException*& exception : thrown) {
    try {
      AfxThrowMemoryException();
    } catch (CMemoryException* caught) {
      caught->Delete();
      exception = caught;
    }
  }
  EXPECT_EQ(thrown[0], thrown[1]);
  thrown[0]->Delete();
}

// Exceptions of the program pass through frames of the library.
TEST(ExceptionsTest, PassThroughTheLibrary) {
  using namespace msl::utilities;
  HookedManager manager;
  CStringT<wchar_t> core;
  manager.onAllocate = []() -> bool { throw new COleException(E_FAIL); };
  EXPECT_TRUE(throws<COleException>([&] { core = L"text"; }));
  manager.onAllocate = []() -> bool { throw SafeIntException(SafeIntArithmeticOverflow); };
  try {
    core = L"text";
    FAIL();
  } catch (const SafeIntException& exception) {
    EXPECT_EQ(exception.m_code, SafeIntArithmeticOverflow);
  }
  EXPECT_EQ(core.GetAllocLength(), 0);
}

#ifndef _WIN32

TEST(ExceptionsTest, NeedNoMemory) {
  bool arrived[3] = {};
  {
    support::AllocFault fault(1, support::AllocFault::Span::forEver);
    arrived[0] = throws<CMemoryException>(AfxThrowMemoryException);
    arrived[1] = throws<CInvalidArgException>(AfxThrowInvalidArgException);
    EXPECT_EQ(fault.allocations(), 0u);
    arrived[2] = throws<CMemoryException>([] { AfxThrowOleException(E_FAIL); });
  }
  EXPECT_TRUE(arrived[0]);
  EXPECT_TRUE(arrived[1]);
  EXPECT_TRUE(arrived[2]);
}

#endif

}  // namespace
}  // namespace afxtest
