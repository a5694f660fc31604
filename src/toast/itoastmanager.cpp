#include <vlhostkit/toast.h>

namespace VL::Framework {

// Here, so that the library has them to export, with the table of virtual functions.
ITXToastManager::ITXToastManager() = default;
ITXToastManager::ITXToastManager(const ITXToastManager&) = default;
ITXToastManager& ITXToastManager::operator=(const ITXToastManager&) = default;
ITXToastManager::~ITXToastManager() = default;

}  // namespace VL::Framework
