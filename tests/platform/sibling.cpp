#include <vlplatform/basetypes.h>

extern "C" VLHOSTKIT_SYMBOL_EXPORT INT_PTR vlTestSiblingCalls() {
  static INT_PTR calls = 0;
  return ++calls;
}
