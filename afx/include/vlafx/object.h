/// The root of the framework's classes.
#ifndef VLAFX_OBJECT_H
#define VLAFX_OBJECT_H

#include <vlhostkit/export.h>

/// What a container can hold and delete without knowing more. Objects are not copied.
class VLAFX_API CObject {
 public:
  virtual ~CObject();
  CObject(const CObject&) = delete;
  CObject& operator=(const CObject&) = delete;

 protected:
  CObject() = default;
};

#endif
