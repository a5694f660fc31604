#include <vlplatform/machine.h>

namespace vlplatform {

Machine& Machine::get() {
  static auto* const instance = new Machine;
  return *instance;
}

void Machine::reset() {
  faults_.reset();
  clock_.reset();
  modules_.reset();
  strings_.reset();
  accounts_.reset();
  sessions_.reset();
  network_.reset();
  drives_.reset();
  environment_.reset();
  registry_.reset();
  files_.reset();
  installer_.reset();
  version_.reset();
  messages_.reset();
  windows_.reset();
}

}  // namespace vlplatform
