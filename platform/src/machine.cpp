#include <vlplatform/machine.h>

namespace vlplatform {

Machine& Machine::get() {
  static Machine* const instance = new Machine;
  return *instance;
}

void Machine::reset() {
  faults_.reset();
  clock_.reset();
  modules_.reset();
  strings_.reset();
  registry_.reset();
}

}  // namespace vlplatform
