// Secret strings: whatever the sequence of operations, they hold what plain strings would, and give no buffer back with
// something in it. The input is the sequence, in the bytes of the tests' model.
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "securetext/model.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const securetext::model::Result result = securetext::model::run({data, size});
  if (!result.mismatch.empty()) {
    std::fprintf(stderr, "does not hold: %s\n", result.mismatch.c_str());
    std::abort();
  }
  return 0;
}
