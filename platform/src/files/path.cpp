#include "path.h"

#include "../unicode.h"

namespace vlplatform::files {
namespace {

constexpr std::wstring_view kSeparators = L"\\/";

bool isLetter(wchar_t c) {
  return lowerCase(c) >= L'a' && lowerCase(c) <= L'z';
}

void add(std::vector<std::wstring>* names, std::wstring_view name) {
  if (name == L"..") {
    if (!names->empty()) {
      names->pop_back();
    }
  } else if (!name.empty() && name != L".") {
    names->emplace_back(name);
  }
}

}  // namespace

std::wstring FullPath::text() const {
  std::wstring text{drive, L':', L'\\'};
  for (std::size_t i = 0; i < names.size(); ++i) {
    text += (i == 0 ? L"" : L"\\") + names[i];
  }
  return endsInBackslash && !names.empty() ? text + L'\\' : text;
}

std::optional<FullPath> fullPath(const wchar_t* path) {
  std::wstring_view rest = path != nullptr ? path : L"";
  if (rest.empty() || rest.size() >= MAX_PATH) {
    return std::nullopt;
  }
  FullPath full;
  if (rest.size() >= 2 && rest[1] == L':' && isLetter(rest[0])) {
    full.drive = rest[0];
    rest.remove_prefix(2);
  }
  full.endsInBackslash = !rest.empty() && kSeparators.find(rest.back()) != std::wstring_view::npos;
  while (!rest.empty()) {
    const std::wstring_view name = rest.substr(0, rest.find_first_of(kSeparators));
    add(&full.names, name);
    rest.remove_prefix(std::min(name.size() + 1, rest.size()));
  }
  return full;
}

bool matches(std::wstring_view name, std::wstring_view pattern) {
  if (pattern.empty()) {
    return name.empty();
  }
  if (pattern.front() == L'*') {
    return matches(name, pattern.substr(1)) || (!name.empty() && matches(name.substr(1), pattern));
  }
  return !name.empty() && (pattern.front() == L'?' || lowerCase(pattern.front()) == lowerCase(name.front())) &&
         matches(name.substr(1), pattern.substr(1));
}

}  // namespace vlplatform::files
