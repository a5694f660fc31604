// Registry text: whatever the bytes, either nothing changes and a line of the file is to blame, or the registry that
// they make comes back from the text that is written of it.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include <platform/registrydump.h>

#include <vlplatform/machine.h>

namespace {

#define CHECK(condition)                                                                  \
  do {                                                                                    \
    if (!(condition)) {                                                                   \
      std::fprintf(stderr, "%s:%d: does not hold: %s\n", __FILE__, __LINE__, #condition); \
      std::abort();                                                                       \
    }                                                                                     \
  } while (false)

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool clockStands = (vlplatform::machine().clock().setTicks(130'200'000'000'000'000), true);
  static_cast<void>(clockStands);
  vlplatform::Registry& registry = vlplatform::machine().registry();
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
