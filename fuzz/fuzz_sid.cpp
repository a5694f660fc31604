// SIDs: text that is taken comes back from the block in its own form, by the platform and by the library in both
// widths, and other text is refused as such. An input is a text; its bytes are also tried as a SID.
#include <vlhostkit/sysfacts.h>

#include "fuzz.h"

using fuzz::Block;

// An independent writer of the form.
static std::wstring formOf(fuzz::Bytes sid) {
  std::uint64_t authority = 0;
  for (const std::uint8_t byte : sid.subspan(2, 6)) authority = authority << 8 | byte;
  wchar_t text[32];
  std::swprintf(text, std::size(text), authority >> 32 != 0 ? L"S-1-0x%012llx" : L"S-1-%llu", authority);
  std::wstring form = text;
  for (std::size_t i = 0; i < sid[1]; ++i) {
    DWORD part;
    std::memcpy(&part, &sid[8 + 4 * i], sizeof part);
    form += L'-' + std::to_wstring(part);
  }
  return form;
}

template <auto kConvert, class Char>
static void convertByLibrary(PSID sid, const std::basic_string<Char>& form, DWORD demanded) {
  const Block<Char> text(demanded / sizeof(Char)), tooSmall(text.size() - 1);
  DWORD size = demanded - 1;
  CHECK(!kConvert(sid, tooSmall.data(), &size) && GetLastError() == ERROR_INSUFFICIENT_BUFFER && size == demanded);
  CHECK(tooSmall.untouched());
  CHECK(kConvert(sid, text.data(), &size) && size == demanded);
  CHECK(text.holdsText(form.size()) && text.data() == form && text.untouched(form.size() + 1));
}

// The form of a block that is a SID.
static std::wstring convert(fuzz::Bytes bytes) {
  const Block<BYTE> sid(bytes.size());
  std::copy(bytes.begin(), bytes.end(), sid.data());
  std::wstring form = formOf(bytes);
  wchar_t* text = nullptr;
  CHECK(ConvertSidToStringSidW(sid.data(), &text) && text == form);
  LocalFree(text);
  const DWORD chars = 28 + 12 * bytes[1];
  convertByLibrary<vlSysConvertSIDW>(sid.data(), form, chars * sizeof(wchar_t));
  convertByLibrary<vlSysConvertSIDA>(sid.data(), std::string(form.begin(), form.end()), chars);
  return form;
}

// Text to block and back. Empty if it was refused.
static std::wstring read(const std::wstring& text) {
  const Block<wchar_t> given(text);
  BYTE untouched = 0;
  PSID sid = &untouched;
  SetLastError(ERROR_SUCCESS);
  if (!ConvertStringSidToSidW(given.data(), &sid)) {
    CHECK(GetLastError() == ERROR_INVALID_SID && sid == &untouched);
    return {};
  }
  CHECK(IsValidSid(sid));
  std::wstring form = convert({static_cast<const BYTE*>(sid), GetLengthSid(sid)});
  LocalFree(sid);
  return form;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::machine();
  const std::wstring form = read(fuzz::text<wchar_t>({data, size}));
  CHECK(form.empty() || read(form) == form);
  if (size < 8) return 0;
  const bool valid = data[0] == SID_REVISION && data[1] <= SID_MAX_SUB_AUTHORITIES;
  const std::size_t length = 8 + 4u * (valid ? data[1] : 0);
  if (size < length) return 0;
  const Block<BYTE> sid(length);
  std::copy_n(data, length, sid.data());
  wchar_t* text = nullptr;
  DWORD capacity = 0;
  CHECK(valid || (!ConvertSidToStringSidW(sid.data(), &text) && GetLastError() == ERROR_INVALID_SID && !text));
  CHECK(valid || (!vlSysConvertSIDW(sid.data(), text, &capacity) && capacity == 0));
  // A SID without parts has a form that is not read back.
  if (valid) CHECK(read(convert({data, length})) == (data[1] != 0 ? formOf({data, length}) : std::wstring()));
  return 0;
}
