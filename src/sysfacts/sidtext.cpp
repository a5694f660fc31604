// The text of a SID, and of the user's that a token belongs to. Nothing is logged here.
#include <vlhostkit/sysfacts.h>

#include "frame/handle.h"
#include "frame/width.h"

namespace {

struct Narrow : vl::Narrow {
  static constexpr auto print = &wsprintfA;
  static constexpr auto convertSid = &vlSysConvertSIDA;
};

struct Wide : vl::Wide {
  static constexpr auto print = &wsprintfW;
  static constexpr auto convertSid = &vlSysConvertSIDW;
};

// The longest text of a SID with that many sub-authorities, terminator counted, and a little more.
template <class Char>
DWORD bytesDemanded(DWORD subAuthorities) {
  return (28 + 12 * subAuthorities) * sizeof(Char);
}

template <class Width, class Char = typename Width::Char>
BOOL convert(PSID sid, Char* text, DWORD* size) {
  if (!IsValidSid(sid)) {
    return FALSE;
  }
  const BYTE(&authority)[6] = GetSidIdentifierAuthority(sid)->Value;
  const DWORD subAuthorities = *GetSidSubAuthorityCount(sid);
  const DWORD demanded = bytesDemanded<Char>(subAuthorities);
  if (*size < demanded) {
    *size = demanded;
    return vl::fail(ERROR_INSUFFICIENT_BUFFER);
  }
  text += Width::print(text, vl::literal<Char, L"S-%lu-">(), DWORD{1});
  if (authority[0] == 0 && authority[1] == 0) {
    const DWORD number = static_cast<DWORD>(authority[2]) << 24 | static_cast<DWORD>(authority[3]) << 16 |
                         static_cast<DWORD>(authority[4]) << 8 | authority[5];
    text += Width::print(text, vl::literal<Char, L"%lu">(), number);
  } else {
    text += Width::print(text, vl::literal<Char, L"0x%02hx%02hx%02hx%02hx%02hx%02hx">(), authority[0], authority[1],
                         authority[2], authority[3], authority[4], authority[5]);
  }
  for (DWORD i = 0; i < subAuthorities; ++i) {
    text += Width::print(text, vl::literal<Char, L"-%lu">(), *GetSidSubAuthority(sid, i));
  }
  return TRUE;
}

template <class Width, class Char = typename Width::Char>
BOOL obtain(HANDLE token, Char* text, DWORD* size) {
  DWORD bytes = 0;
  if (GetTokenInformation(token, TokenUser, nullptr, 0, &bytes) || GetLastError() != ERROR_INSUFFICIENT_BUFFER) {
    return FALSE;
  }
  const vl::LocalBlock<TOKEN_USER*> user(static_cast<TOKEN_USER*>(LocalAlloc(LPTR, bytes)));
  if (!user || !GetTokenInformation(token, TokenUser, user.get(), bytes, &bytes)) {
    return FALSE;
  }
  return Width::convertSid(user.get()->User.Sid, text, size);
}

}  // namespace

BOOL vlSysConvertSIDW(PSID sid, LPWSTR text, DWORD* size) {
  return convert<Wide>(sid, text, size);
}

BOOL vlSysConvertSIDA(PSID sid, LPSTR text, DWORD* size) {
  return convert<Narrow>(sid, text, size);
}

BOOL vlSysObtainSIDW(HANDLE token, LPWSTR text, DWORD* size) {
  return obtain<Wide>(token, text, size);
}

BOOL vlSysObtainSIDA(HANDLE token, LPSTR text, DWORD* size) {
  return obtain<Narrow>(token, text, size);
}
