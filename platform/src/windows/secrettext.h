/// A text that is overwritten wherever it goes.
#ifndef VLPLATFORM_SRC_WINDOWS_SECRETTEXT_H
#define VLPLATFORM_SRC_WINDOWS_SECRETTEXT_H

#include <vector>

#include <vlhostkit/secstring.h>
#include <vlplatform/basetypes.h>

namespace vlplatform::windows {

/// Blocks are overwritten as a whole before they are released. A change stays in the block if it fits, and leaves
/// nothing behind the text's end.
class SecretText {
 public:
  std::size_t size() const { return size_; }
  /// Null is an empty text.
  void assign(const wchar_t* text);
  /// Puts `count` characters in place of those between `from` and `to`.
  void replace(std::size_t from, std::size_t to, const wchar_t* text, std::size_t count);
  /// Copies what fits into `chars` characters with a terminator; the length of the copy.
  std::size_t copy(wchar_t* target, std::size_t chars) const;

 private:
  std::vector<wchar_t, VL::Framework::secallocator<wchar_t>> block_;
  std::size_t size_ = 0;
};

}  // namespace vlplatform::windows

#endif
