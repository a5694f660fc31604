#include "results.h"

#include <algorithm>
#include <iterator>

namespace {

struct Words {
  DWORD code;
  const char* words;
};

constexpr Words kWords[] = {
    {ERROR_SUCCESS, "done"},
    {ERROR_NOT_ENOUGH_MEMORY, "out of memory"},
    {ERROR_INVALID_PARAMETER, "no such form, or a value out of its range"},
    {ERROR_INSUFFICIENT_BUFFER, "the buffer is too small"},
    {ERROR_MOD_NOT_FOUND, "a library that it needs is missing"},
    {ERROR_PROC_NOT_FOUND, "a function of the platform that it needs is missing"},
    {ERROR_CANNOT_COPY, "a part of the text can't be copied"},
};

}  // namespace

std::string resultInWords(DWORD code) {
  const auto* const found =
      std::find_if(std::begin(kWords), std::end(kWords), [code](const Words& entry) { return entry.code == code; });
  return found != std::end(kWords) ? found->words : "the platform reports a failure";
}
