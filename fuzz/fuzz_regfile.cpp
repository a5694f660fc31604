// Registry text: whatever the bytes, either nothing changes and a line of the file is to blame, or the registry that
// they make comes back from the text that is written of it.
#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include <platform/registrydump.h>

#include "fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  vlplatform::Registry& registry = fuzz::machine().registry();
  const std::string_view input(reinterpret_cast<const char*>(data), size);

  registry.reset();
  static const std::wstring atFirst = registrydump::all();
  const vlplatform::Registry::Result result = registry.loadText(input);
  const std::wstring content = registrydump::all();
  if (!result.ok()) {
    CHECK(content == atFirst);
    CHECK(result.line >= 1 && result.line <= 1u + static_cast<std::size_t>(std::count(data, data + size, '\n')));
    return 0;
  }
  const std::string text = registry.text();
  registry.reset();
  CHECK(registry.loadText(text).ok());
  CHECK(registrydump::all() == content);
  CHECK(registry.text() == text);
  return 0;
}
