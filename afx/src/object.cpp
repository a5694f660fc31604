#include <vlafx/object.h>

bool CRuntimeClass::IsDerivedFrom(const CRuntimeClass* base) const {
  const CRuntimeClass* record = this;
  while (record != nullptr && record != base) {
    record = record->m_pfnGetBaseClass != nullptr ? record->m_pfnGetBaseClass() : nullptr;
  }
  return record != nullptr;
}

const CRuntimeClass CObject::classCObject = {"CObject", static_cast<int>(sizeof(CObject)), 0xFFFF, nullptr, nullptr};

CRuntimeClass* CObject::GetThisClass() {
  return const_cast<CRuntimeClass*>(&classCObject);
}

CRuntimeClass* CObject::GetRuntimeClass() const {
  return GetThisClass();
}

CObject::~CObject() = default;
