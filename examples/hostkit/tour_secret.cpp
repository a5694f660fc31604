#include <vlhostkit/vlhostkit.h>
#include <string>

#include <memoryscan/memoryscan.h>

#include "tour.h"

namespace {

using memoryscan::Secret;

std::string characters(int count) {
  return std::to_string(count) + " characters";
}

// Functions of their own, so that nothing of them is left on the stack in use.

[[gnu::noinline]] void readInto(CSecStr& password, const Secret& typed) {
  wchar_t* const room = password.GetBuffer(static_cast<int>(Secret::kLength));
  typed.reveal(room);
  room[Secret::kLength] = L'\0';
  password.ReleaseBuffer(-1);
}

[[gnu::noinline]] void useSecretText(TourPage& page, const Secret& typed) {
  CSecStr password;
  readInto(password, typed);
  page.fact("Typed straight into a CSecStr", characters(password.GetLength()));
  page.fact("While it is held", copiesFound(typed));

  password.Insert(4, L"-");
  password += L'!';
  const int replaced = password.Replace(L"-", L"::");
  page.fact("Edited", std::to_string(replaced) + " replacement, now " + characters(password.GetLength()));

  CSecStr entry;
  entry.Format(L"%s@%d", password.GetString(), 4711);
  page.fact("Formatted into another", characters(entry.GetLength()));

  const CSecStrA narrow(entry);
  page.fact("Converted to narrow text", std::to_string(narrow.GetLength()) + " bytes");

  CSecStrList list;
  list.AddTail(password);
  list.AddTail(entry.Left(static_cast<int>(Secret::kLength)));
  page.fact("Kept in a list", std::to_string(list.GetCount()) + " entries");
  page.fact("While all of them are held", copiesFound(typed));
}

[[gnu::noinline]] void usePlainText(const Secret& typed) {
  std::wstring password(Secret::kLength, L'\0');
  typed.reveal(password.data());
  std::wstring entry = password + L"@4711";
  __asm__ __volatile__("" : : "r"(entry.data()) : "memory");
}

}  // namespace

std::string copiesFound(const Secret& secret) {
  memoryscan::scrubDeadStack();
  const memoryscan::ScanResult found = memoryscan::scanMemory(secret);
  const std::string copies = found.count == 1 ? "1 copy" : std::to_string(found.count) + " copies";
  return copies + " in " + std::to_string(found.bytes / 1024) + " KiB of memory";
}

void tourSecret(TourPage& page) {
  page.title(
      "Secret text: a password that this program makes up and keeps in encoded form, from its arrival to its end");
  const Secret typed;
  page.fact("Before it arrives", copiesFound(typed));
  useSecretText(page, typed);
  page.fact("Let go", copiesFound(typed));

  page.title("Secret text: the same look after plain strings were let go");
  usePlainText(typed);
  page.fact("Let go", copiesFound(typed));
}
