#include <vlplatform/resources.h>
#include "gate.h"

namespace vlplatform {

Strings::Key Strings::key(HINSTANCE module, UINT id) {
  return {module != nullptr ? module : Modules::program(), static_cast<WORD>(id)};
}

void Strings::reset() {
  const std::lock_guard guard(mutex_);
  texts_.clear();
}

void Strings::set(HINSTANCE module, UINT id, std::wstring_view text) {
  const OwnAllocations own;
  const std::lock_guard guard(mutex_);
  texts_[key(module, id)] = text;
}

const std::wstring* Strings::find(HINSTANCE module, UINT id) const {
  const std::lock_guard guard(mutex_);
  const auto found = texts_.find(key(module, id));
  return found != texts_.end() ? &found->second : nullptr;
}

}  // namespace vlplatform

int LoadStringW(HINSTANCE module, UINT id, LPWSTR buffer, int chars) {
  if (vlplatform::gateFails("LoadStringW")) {
    return 0;
  }
  if (buffer == nullptr || chars < 0) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  const std::wstring* const text = vlplatform::machine().strings().find(module, id);
  if (text == nullptr) {
    SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
    return 0;
  }
  if (chars == 0) {
    *reinterpret_cast<const wchar_t**>(buffer) = text->data();
    return static_cast<int>(text->size());
  }
  const std::size_t copied = text->copy(buffer, static_cast<std::size_t>(chars) - 1);
  buffer[copied] = L'\0';
  return static_cast<int>(copied);
}
