#include "foldcase.h"

#include <algorithm>

namespace vlplatform::registry {
namespace {

// How the lower-case letters of a range become upper-case ones.
enum class Rule { shift, fromOdd, fromEven };

struct Range {
  wchar_t first;
  wchar_t last;
  Rule rule;
  int shift;
};

constexpr Range kRanges[] = {
    {0x00E0, 0x00F6, Rule::shift, -0x20}, {0x00F8, 0x00FE, Rule::shift, -0x20}, {0x00FF, 0x00FF, Rule::shift, 0x79},
    {0x0100, 0x012F, Rule::fromOdd, -1},  {0x0132, 0x0137, Rule::fromOdd, -1},  {0x0139, 0x0148, Rule::fromEven, -1},
    {0x014A, 0x0177, Rule::fromOdd, -1},  {0x0179, 0x017E, Rule::fromEven, -1}, {0x03AC, 0x03AC, Rule::shift, -0x26},
    {0x03AD, 0x03AF, Rule::shift, -0x25}, {0x03B1, 0x03C1, Rule::shift, -0x20}, {0x03C2, 0x03C2, Rule::shift, -0x1F},
    {0x03C3, 0x03CB, Rule::shift, -0x20}, {0x03CC, 0x03CC, Rule::shift, -0x40}, {0x03CD, 0x03CE, Rule::shift, -0x3F},
    {0x0430, 0x044F, Rule::shift, -0x20}, {0x0450, 0x045F, Rule::shift, -0x50}, {0x0460, 0x0481, Rule::fromOdd, -1},
    {0x048A, 0x04BF, Rule::fromOdd, -1},  {0x04C1, 0x04CE, Rule::fromEven, -1}, {0x04CF, 0x04CF, Rule::shift, -0x0F},
    {0x04D0, 0x052F, Rule::fromOdd, -1},  {0x0561, 0x0586, Rule::shift, -0x30}, {0x1E00, 0x1E95, Rule::fromOdd, -1},
    {0x1EA0, 0x1EFF, Rule::fromOdd, -1},  {0xFF41, 0xFF5A, Rule::shift, -0x20},
};

}  // namespace

wchar_t upperCase(wchar_t c) {
  if (c < 0x80) [[likely]] {
    return c >= L'a' && c <= L'z' ? c - L'a' + L'A' : c;
  }
  const Range* const range =
      std::find_if(std::begin(kRanges), std::end(kRanges), [c](const Range& known) { return c <= known.last; });
  if (range == std::end(kRanges) || c < range->first) {
    return c;
  }
  const bool odd = c % 2 != 0;
  const bool lower = range->rule == Rule::shift || odd == (range->rule == Rule::fromOdd);
  return lower ? c + range->shift : c;
}

int compareNames(std::wstring_view a, std::wstring_view b) {
  const std::size_t common = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < common; ++i) {
    if (a[i] != b[i]) {
      const wchar_t x = upperCase(a[i]);
      const wchar_t y = upperCase(b[i]);
      if (x != y) {
        return x < y ? -1 : 1;
      }
    }
  }
  return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

}  // namespace vlplatform::registry
