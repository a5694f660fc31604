#include <support/importpatch.h>

#include <gtest/gtest.h>

#include <cstring>

namespace support {
namespace {

// The slot in the module's import table through which it calls `function`, null if there is none.
FARPROC* findSlot(HMODULE module, const char* function) {
  auto* const base = reinterpret_cast<BYTE*>(module);
  const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
  const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
  const IMAGE_DATA_DIRECTORY& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  if (directory.Size == 0) {
    return nullptr;
  }
  const auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
  for (; library->Name != 0; ++library) {
    const auto* name = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
    auto* slot = reinterpret_cast<FARPROC*>(base + library->FirstThunk);
    for (; name->u1.AddressOfData != 0; ++name, ++slot) {
      if (!IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal) &&
          std::strcmp(reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + name->u1.AddressOfData)->Name, function) ==
              0) {
        return slot;
      }
    }
  }
  return nullptr;
}

void store(FARPROC* slot, FARPROC function) {
  DWORD protection = 0;
  ASSERT_TRUE(VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection));
  *slot = function;
  VirtualProtect(slot, sizeof *slot, protection, &protection);
}

}  // namespace

ImportPatch::ImportPatch(const wchar_t* module, const char* function, FARPROC replacement)
    : slot_(GetModuleHandleW(module) != nullptr ? findSlot(GetModuleHandleW(module), function) : nullptr) {
  if (slot_ == nullptr) {
    ADD_FAILURE() << testing::PrintToString(module) << " is not loaded or does not import " << function;
    return;
  }
  original_ = *slot_;
  store(slot_, replacement);
}

ImportPatch::~ImportPatch() {
  if (slot_ != nullptr) {
    store(slot_, original_);
  }
}

}  // namespace support
