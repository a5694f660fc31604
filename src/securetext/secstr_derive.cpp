// CSecStr: members and operators that build a new object and leave the source alone.
#include <algorithm>

#include <vlhostkit/securestring.h>

CSecStr CSecStr::Mid(int first, int count) const {
  const int length = GetLength();
  first = std::max(first, 0);
  count = first > length ? 0 : std::clamp(count, 0, length - first);
  if (first == 0 && count == length) {
    return *this;
  }
  // The counted constructor takes no temporary for an empty text.
  return {GetString() + (count == 0 ? 0 : first), count};
}

CSecStr CSecStr::Mid(int first) const {
  return Mid(first, GetLength() - std::max(first, 0));
}

CSecStr CSecStr::Left(int count) const {
  return Mid(0, std::max(count, 0));
}

CSecStr CSecStr::Right(int count) const {
  const int kept = std::clamp(count, 0, GetLength());
  return Mid(GetLength() - kept, kept);
}

CSecStr operator+(const CSecStr& a, const CSecStr& b) {
  CSecStr joined(a);
  joined += b;
  return joined;
}

CSecStr operator+(const CSecStr& a, const wchar_t* b) {
  return a + CSecStr(b);
}

CSecStr operator+(const wchar_t* a, const CSecStr& b) {
  return CSecStr(a) + b;
}
