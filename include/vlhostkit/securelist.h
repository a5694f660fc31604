/// `CSecStrList`, an ordered list of secret wide strings.
#ifndef VLHOSTKIT_SECURELIST_H
#define VLHOSTKIT_SECURELIST_H

#include <vlafx/oblist.h>
#include <vlhostkit/securestring.h>

/// Each entry owns a CSecStr, so that letting an entry go wipes its text. Texts come in and go out as deep copies: no
/// entry shares a buffer with a caller's string. A position is valid until its entry is removed. Out of memory, the
/// exception passes through with the list unchanged. Nothing is logged. A list is for one thread at a time.
class VLHOSTKIT_API CSecStrList {
 public:
  CSecStrList();
  /// Deletes all entries, each of which wipes its text.
  ~CSecStrList();
  CSecStrList(const CSecStrList&) = delete;
  CSecStrList& operator=(const CSecStrList&) = delete;

  /// 1 for an empty list, otherwise 0.
  int IsEmpty() const;
  int GetCount() const;
  /// Null for an empty list.
  __POSITION* GetHeadPosition() const;
  /// The first entry's text. The list must not be empty.
  const CSecStr& GetHead() const;
  /// The text at the position, which moves on to the next entry, to null after the last. Throws CInvalidArgException*
  /// for a null position.
  const CSecStr& GetNext(__POSITION*& position) const;
  /// The entry's own text: changes made through it change the entry. Throws CInvalidArgException* for a null position.
  CSecStr& GetAt(__POSITION* position);
  /// The first entry behind `after` (null: from the head) whose text equals `text`, case-sensitively; null if there is
  /// none. Passing a hit on gives the next one.
  __POSITION* Find(const wchar_t* text, __POSITION* after) const;
  /// Append a copy; give its position. A null text gives an empty entry.
  __POSITION* AddTail(const CSecStr& text);
  __POSITION* AddTail(const wchar_t* text);
  /// Removes the first entry, wiping it, and gives its text in a new string. The list must not be empty.
  CSecStr RemoveHead();
  /// Removes and wipes all entries.
  void RemoveAll();

 private:
  class CElem;
  CObList m_list;
};

#endif
