#include <tx.cext/converter.h>

#include <cstddef>

#include <vlhostkit/types.h>

namespace VL::Framework {

void CConverter::charToString(const char* text, int length, secstring& out) {
  if (text == nullptr || length <= 0) {
    return;
  }
  const int chars = MultiByteToWideChar(CP_ACP, 0, text, length, nullptr, 0);
  if (chars > 0) {
    const std::size_t before = out.size();
    out.resize(before + static_cast<std::size_t>(chars));
    const int converted = MultiByteToWideChar(CP_ACP, 0, text, length, out.data() + before, chars);
    out.resize(before + static_cast<std::size_t>(converted));
  }
}

}  // namespace VL::Framework
