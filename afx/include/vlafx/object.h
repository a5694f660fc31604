/// The root of the framework's classes, and the record that tells an object's class while the program runs.
#ifndef VLAFX_OBJECT_H
#define VLAFX_OBJECT_H

#include <vlhostkit/types.h>

class CObject;

/// What a class tells of itself. Two classes are the same if their records have the same address.
struct CRuntimeClass {
  const char* m_lpszClassName;            ///< as the source has it
  int m_nObjectSize;                      ///< in bytes
  UINT m_wSchema;                         ///< 0xFFFF: objects of the class are not stored
  CObject* (*m_pfnCreateObject)();        ///< null: they are not made by name
  CRuntimeClass* (*m_pfnGetBaseClass)();  ///< null for CObject

  /// Whether the class is `base`, or derived from it.
  VLAFX_API bool IsDerivedFrom(const CRuntimeClass* base) const;
};

/// The record of a class that has one.
#define RUNTIME_CLASS(class_name) (class_name::GetThisClass())

/// Gives a class derived from CObject its record: DECLARE_DYNAMIC(CLogOn) stands first in the class, and
/// IMPLEMENT_DYNAMIC(CLogOn, CDialog) in one source file.
#define DECLARE_DYNAMIC(class_name)             \
 protected:                                     \
  static CRuntimeClass* _GetBaseClass();        \
                                                \
 public:                                        \
  static const CRuntimeClass class##class_name; \
  static CRuntimeClass* GetThisClass();         \
  CRuntimeClass* GetRuntimeClass() const override;

/// The other half of DECLARE_DYNAMIC.
#define IMPLEMENT_DYNAMIC(class_name, base_name)                                                                  \
  CRuntimeClass* class_name::_GetBaseClass() {                                                                    \
    return RUNTIME_CLASS(base_name);                                                                              \
  }                                                                                                               \
  const CRuntimeClass class_name::class##class_name = {#class_name, static_cast<int>(sizeof(class_name)), 0xFFFF, \
                                                       nullptr, &class_name::_GetBaseClass};                      \
  CRuntimeClass* class_name::GetThisClass() {                                                                     \
    return const_cast<CRuntimeClass*>(&class##class_name);                                                        \
  }                                                                                                               \
  CRuntimeClass* class_name::GetRuntimeClass() const {                                                            \
    return GetThisClass();                                                                                        \
  }

/// What a container can hold and delete without knowing more. Objects are not copied.
class VLAFX_API CObject {
 public:
  /// The record of this class, which is that of DECLARE_DYNAMIC in derived ones.
  static const CRuntimeClass classCObject;
  /// Its address.
  static CRuntimeClass* GetThisClass();
  /// The record of the object's class, or of the next base that has one.
  virtual CRuntimeClass* GetRuntimeClass() const;
  virtual ~CObject();
  CObject(const CObject&) = delete;
  CObject& operator=(const CObject&) = delete;

  /// Whether the object's class is that of `base`, or derived from it.
  bool IsKindOf(const CRuntimeClass* base) const { return GetRuntimeClass()->IsDerivedFrom(base); }

 protected:
  CObject() = default;
};

#endif
