#include "results.h"

#include <algorithm>
#include <iterator>

namespace {

template <class Code>
struct Words {
  Code code;
  const char* words;
};

constexpr Words<DWORD> kWords[] = {
    {ERROR_SUCCESS, "done"},
    {ERROR_FILE_NOT_FOUND, "nothing is known of it"},
    {ERROR_ACCESS_DENIED, "access is denied"},
    {ERROR_NOT_ENOUGH_MEMORY, "out of memory"},
    {ERROR_INVALID_DRIVE, "there is no such drive"},
    {ERROR_INVALID_PARAMETER, "no such form, or a value out of its range"},
    {ERROR_INSUFFICIENT_BUFFER, "the buffer is too small"},
    {ERROR_MOD_NOT_FOUND, "a library that it needs is missing"},
    {ERROR_PROC_NOT_FOUND, "a function of the platform that it needs is missing"},
    {ERROR_BAD_PATHNAME, "the path of the profile has no folder in it"},
    {ERROR_ENVVAR_NOT_FOUND, "the environment variable is not set"},
    {ERROR_MORE_DATA, "there is more than fits"},
    {ERROR_NO_MORE_ITEMS, "there is nothing more"},
    {ERROR_CANNOT_COPY, "a part of the text can't be copied"},
    {ERROR_BADDB, "the registry can't be read"},
    {ERROR_NONE_MAPPED, "there is no such account"},
    {ERROR_INVALID_SID, "that is no SID"},
    {ERROR_NO_SUCH_DOMAIN, "there is no such domain"},
    {ERROR_TRUSTED_RELATIONSHIP_FAILURE, "the domain does not answer"},
};

constexpr Words<int> kRegistryWords[] = {
    {kRegistryDone, "done"},
    {kRegistryRefused, "missing, or could not be opened, read or changed"},
    {kRegistryTooSmall, "it grows faster than it can be read"},
    {kRegistryBadArgument, "invalid argument"},
    {kRegistryOtherType, "the value has another type"},
};

template <class Table, class Code>
std::string lookUp(const Table& table, Code code) {
  const auto found =
      std::find_if(std::begin(table), std::end(table), [code](const auto& entry) { return entry.code == code; });
  return found != std::end(table) ? found->words : "the platform reports a failure";
}

}  // namespace

std::string resultInWords(DWORD code) {
  return lookUp(kWords, code);
}

std::string registryResultInWords(int result) {
  return lookUp(kRegistryWords, result);
}
