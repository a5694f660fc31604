/// A SID as a value, and its two outer forms: the platform's block and its text.
#ifndef VLPLATFORM_SRC_SIDVALUE_H
#define VLPLATFORM_SRC_SIDVALUE_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <vlplatform/security.h>

namespace vlplatform {

struct SidValue {
  std::uint64_t authority = 0;  ///< 48 bits
  std::vector<DWORD> subAuthorities;

  bool operator==(const SidValue&) const = default;

  /// Bytes of the block.
  DWORD length() const;
  /// Makes the block in `target`, which has room for it.
  void write(void* target) const;
  std::wstring text() const;
  /// The SID without its last sub-authority: of an account, its domain's.
  SidValue parent() const;

  /// Nothing if the block is no valid SID.
  static std::optional<SidValue> ofBlock(const void* sid);
  /// Nothing if the text is none of a SID.
  static std::optional<SidValue> ofText(std::wstring_view text);
};

bool isValidSid(const void* sid);

}  // namespace vlplatform

#endif
