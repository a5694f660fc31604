#include <cwchar>

#include "../gate.h"
#include "../unicode.h"

namespace vlplatform {
namespace {

HINSTANCE moduleOrProgram(HINSTANCE module) {
  return module != nullptr ? module : Modules::program();
}

std::wstring numbered(UINT id) {
  return L'#' + std::to_wstring(static_cast<WORD>(id));
}

// Numbers are names, too: "#12".
std::wstring nameKey(std::wstring_view name) {
  const std::wstring key = upperCase(name);
  return key.starts_with(L'#') ? numbered(static_cast<UINT>(std::wcstoul(key.c_str() + 1, nullptr, 10))) : key;
}

std::wstring nameKey(LPCWSTR name) {
  return IS_INTRESOURCE(name) ? numbered(static_cast<UINT>(reinterpret_cast<UINT_PTR>(name)))
                              : nameKey(std::wstring_view(name));
}

}  // namespace

void Windows::reset() {
  const std::lock_guard lock(mutex_);
  dialogs_.clear();
  user_ = nullptr;
}

void Windows::setDialog(HINSTANCE module, UINT id, DialogTemplate dialog) {
  setDialog(module, numbered(id), std::move(dialog));
}

void Windows::setDialog(HINSTANCE module, std::wstring_view name, DialogTemplate dialog) {
  const OwnAllocations own;
  const std::lock_guard lock(mutex_);
  dialogs_[{moduleOrProgram(module), nameKey(name)}] = std::make_shared<const DialogTemplate>(std::move(dialog));
}

void Windows::setUser(User user) {
  const std::lock_guard lock(mutex_);
  user_ = std::move(user);
}

std::shared_ptr<const DialogTemplate> Windows::find(HINSTANCE module, LPCWSTR name, LPCWSTR type, DWORD& code) const {
  const OwnAllocations own;
  const std::lock_guard lock(mutex_);
  module = moduleOrProgram(module);
  const auto first = dialogs_.lower_bound({module, {}});
  if (nameKey(type) != nameKey(RT_DIALOG) || first == dialogs_.end() || first->first.first != module) {
    code = ERROR_RESOURCE_TYPE_NOT_FOUND;
    return nullptr;
  }
  const auto found = dialogs_.find({module, nameKey(name)});
  if (found == dialogs_.end()) {
    code = ERROR_RESOURCE_NAME_NOT_FOUND;
    return nullptr;
  }
  return found->second;
}

Windows::User Windows::user() const {
  const OwnAllocations own;
  const std::lock_guard lock(mutex_);
  return user_;
}

}  // namespace vlplatform

HRSRC FindResourceW(HINSTANCE module, LPCWSTR name, LPCWSTR type) {
  if (vlplatform::gateFails("FindResourceW")) {
    return nullptr;
  }
  DWORD code = ERROR_SUCCESS;
  const auto found = vlplatform::machine().windows().find(module, name, type, code);
  if (found == nullptr) {
    SetLastError(code);
  }
  return reinterpret_cast<HRSRC>(const_cast<vlplatform::DialogTemplate*>(found.get()));
}
