#include <vlafx/object.h>

CObject::~CObject() = default;
