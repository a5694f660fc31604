#include <vlplatform/machine/allocations.h>

namespace vlplatform {
namespace {
[[gnu::tls_model("initial-exec")]] thread_local constinit unsigned depth = 0;
}

OwnAllocations::OwnAllocations() {
  ++depth;
}
OwnAllocations::~OwnAllocations() {
  --depth;
}
bool OwnAllocations::active() {
  return depth != 0;
}

}  // namespace vlplatform
