#include <vlplatform/machine/environment.h>

#include <unistd.h>

#include "gate.h"
#include "unicode.h"

namespace vlplatform {
namespace {

// What the platform always has.
constexpr struct {
  const wchar_t* name;
  const wchar_t* value;
} kDefaults[] = {
    {L"ALLUSERSPROFILE", L"C:\\ProgramData"},
    {L"CommonProgramFiles", L"C:\\Program Files\\Common Files"},
    {L"CommonProgramFiles(x86)", L"C:\\Program Files (x86)\\Common Files"},
    {L"ComSpec", L"C:\\Windows\\system32\\cmd.exe"},
    {L"OS", L"Windows_NT"},
    {L"ProgramData", L"C:\\ProgramData"},
    {L"ProgramFiles", L"C:\\Program Files"},
    {L"ProgramFiles(x86)", L"C:\\Program Files (x86)"},
    {L"PUBLIC", L"C:\\Users\\Public"},
    {L"SystemDrive", L"C:"},
    {L"SystemRoot", L"C:\\Windows"},
    {L"windir", L"C:\\Windows"},
};

}  // namespace

void Environment::reset() {
  const std::lock_guard lock(mutex_);
  variables_.reset();
}

void Environment::set(std::wstring_view name, std::wstring_view value) {
  const OwnAllocations own;
  const std::lock_guard lock(mutex_);
  known()[lowerCase(name)] = value;
}

bool Environment::remove(std::wstring_view name) {
  const OwnAllocations own;
  const std::lock_guard lock(mutex_);
  return known().erase(lowerCase(name)) != 0;
}

std::optional<std::wstring> Environment::value(std::wstring_view name) const {
  const std::lock_guard lock(mutex_);
  const Variables& variables = known();
  const auto found = variables.find(lowerCase(name));
  return found != variables.end() ? std::optional(found->second) : std::nullopt;
}

// Where the process's environment has names that differ in case only, the first one counts.
Environment::Variables& Environment::known() const {
  if (!variables_) {
    variables_.emplace();
    for (const char* const* next = environ; next != nullptr && *next != nullptr; ++next) {
      const std::wstring entry = toWide(std::string_view(*next));
      const std::size_t separator = std::min(entry.find(L'='), entry.size());
      variables_->emplace(lowerCase(std::wstring_view(entry).substr(0, separator)),
                          entry.substr(std::min(separator + 1, entry.size())));
    }
    for (const auto& row : kDefaults) {
      variables_->emplace(lowerCase(row.name), row.value);
    }
  }
  return *variables_;
}

namespace {

template <class Char>
DWORD readVariable(const Char* name, Char* buffer, DWORD chars) {
  if (name == nullptr || (buffer == nullptr && chars != 0)) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  const OwnAllocations own;
  const std::optional<std::wstring> value = machine().environment().value(wideOrEmpty(name));
  if (!value) {
    SetLastError(ERROR_ENVVAR_NOT_FOUND);
    return 0;
  }
  const std::basic_string<Char> text = inWidth<Char>(*value);
  const auto size = static_cast<DWORD>(text.size());
  if (chars <= size) {
    return size + 1;
  }
  copyTerminated<Char>(text, buffer);
  return size;
}

}  // namespace
}  // namespace vlplatform

using namespace vlplatform;

DWORD GetEnvironmentVariableW(LPCWSTR name, LPWSTR buffer, DWORD chars) {
  return gateFails("GetEnvironmentVariableW") ? 0 : readVariable(name, buffer, chars);
}

DWORD GetEnvironmentVariableA(LPCSTR name, LPSTR buffer, DWORD chars) {
  return gateFails("GetEnvironmentVariableA") ? 0 : readVariable(name, buffer, chars);
}

BOOL SetEnvironmentVariableW(LPCWSTR name, LPCWSTR value) {
  if (gateFails("SetEnvironmentVariableW")) {
    return FALSE;
  }
  const std::wstring_view text = name != nullptr ? name : L"";
  if (text.empty() || text.find(L'=') != std::wstring_view::npos) {
    return succeed(ERROR_INVALID_PARAMETER);
  }
  Environment& environment = machine().environment();
  if (value == nullptr) {
    return succeed(environment.remove(text) ? ERROR_SUCCESS : ERROR_ENVVAR_NOT_FOUND);
  }
  environment.set(text, value);
  return TRUE;
}
