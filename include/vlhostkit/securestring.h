/// `CSecStr` and `CSecStrA`, strings for secret text.
///
/// Their promise: text that has passed through an object is not left readable in memory that the object gives back,
/// moves away from or fills again. Every buffer is overwritten with zeros over its whole allocated length before it is
/// released, before it grows and before it is filled anew, and so is every temporary copy that a member makes, also
/// when an exception passes. docs/secrets.md tells how to work with them, and where the promise ends: text that a
/// caller hands in or copies out is the caller's to wipe.
///
/// Common to all members, unless told otherwise:
///   - Lengths, counts and indexes are characters (bytes in CSecStrA). Texts end at their first NUL.
///   - "Wipes" means: the object's whole buffer is zeroed, and kept with its allocated length.
///   - A null text counts as the empty text.
///   - Pointers to the characters are valid until the next non-const member call.
///   - No two objects share a buffer; pointer arguments may lie inside the object's own text.
///   - Out of memory, the exception of `new` (std::bad_alloc) or of the string core (CMemoryException*) passes through.
///     A member that has wiped the object by then leaves it empty; the comment of each rewriting member says so.
///   - Nothing is logged. There are no locks: an object is for one thread at a time.
#ifndef VLHOSTKIT_SECURESTRING_H
#define VLHOSTKIT_SECURESTRING_H

#include <vlafx/string.h>
#include <vlhostkit/types.h>

/// Secret wide text.
class VLHOSTKIT_API CSecStr {
 public:
  /// Empty text; no buffer yet.
  CSecStr();
  /// One character. NUL gives the empty text.
  CSecStr(wchar_t character);
  /// A copy of `text`, which stays the caller's to wipe.
  CSecStr(const wchar_t* text);
  /// A copy of the first `length` characters of `text`, or fewer if there is a NUL among them. Wipes its temporary
  /// array. Throws COleException* 0x80070057 for a null text with a length other than 0, CMemoryException* for a
  /// negative length: there is no measuring.
  CSecStr(const wchar_t* text, int length);
  /// A deep copy.
  CSecStr(const CSecStr& other);
  /// The wide form of a narrow text in the process's ANSI code page.
  CSecStr(char* text);
  /// The wide form of the first `length` bytes of `text`. Tests, wipe and exceptions of the counted wide constructor.
  CSecStr(const char* text, int length);
  /// Wipes and releases.
  ~CSecStr();

  /// Replaces the text by a copy of `text`; null wipes. A private copy is taken first, then the object is wiped, then
  /// filled; the private copy is wiped. Out of memory after the wipe leaves the object empty.
  CSecStr& operator=(const wchar_t* text);
  /// The same with a deep copy of `other`, which may be this object.
  CSecStr& operator=(const CSecStr& other);
  /// The same with the wide form of a narrow text.
  CSecStr& operator=(char* text);
  CSecStr& operator=(const char* text);

  /// The characters, terminated; writable up to the allocated length through GetBuffer, except at an allocated length
  /// of 0, where nothing may be written.
  operator const wchar_t*() const;
  wchar_t* GetBuffer() const;
  /// The characters, for reading.
  const wchar_t* GetString() const;

  /// Raw access to `n` characters at least; the text stays, up to a NUL that a caller has written into it. If the
  /// buffer must grow, a private copy is taken, the object is wiped and grows over zeros, the text comes back and the
  /// copy is wiped; out of memory after the wipe leaves the object empty. The caller ends the access:
  ///
  ///     wchar_t* text = secret.GetBuffer(64);
  ///     readPassword(text, 65);   // the storage holds one character more than was asked for
  ///     secret.ReleaseBuffer(-1);
  wchar_t* GetBuffer(int n);
  /// Ends raw access with the new length `n`, -1 to measure it by the first NUL; zeroes everything from there to the
  /// end of the allocation. Throws COleException* 0x80070057 below -1 and above the allocated length, with nothing
  /// changed.
  void ReleaseBuffer(int n);
  /// Wipes: the length is 0 afterwards, the allocated length stays.
  void Empty();

  /// The length without the terminator, and whether it is 0.
  int GetLength() const;
  bool IsEmpty() const;
  /// How many characters the buffer holds without moving; 0 for an object that never held text.
  int GetAllocLength() const;

  /// Sets the function that finds the module of a string resource for Format(UINT, ...) and LoadStringW(UINT), for
  /// the whole process. Not tested, not locked: set before other threads use the class.
  static void UpdateFindStringResourceHandleFunction(HINSTANCE (*find)(UINT));

  /// Index of the first occurrence at or after `start`; -1 if there is none, or if `start` is negative or beyond the
  /// text.
  int Find(wchar_t character, int start) const;
  int Find(const wchar_t* text, int start) const;
  /// Index of the last occurrence, -1 if there is none.
  int ReverseFind(wchar_t character) const;
  /// The character at an index from 0 to the length (the terminator). Throws CInvalidArgException* elsewhere.
  wchar_t GetAt(int index) const;
  /// Overwrites a character in place. Throws CInvalidArgException* for an index that is not within the text.
  void SetAt(int index, wchar_t character);
  /// 0 if equal, negative if this text sorts first, positive if after, by the characters' numbers. The second one
  /// ignores case. Throw CInvalidArgException* for a null text.
  int Compare(const wchar_t* text) const;
  int CompareNoCase(const wchar_t* text) const;

  /// These edit in place and wipe nothing: what they drop can stay behind the terminator, inside the object's own
  /// buffer, until its next wipe. Remove gives the number of characters that went.
  int Remove(wchar_t character);
  CSecStr& MakeUpper();
  CSecStr& MakeLower();
  /// White space, or the given character.
  CSecStr& TrimRight();
  CSecStr& TrimRight(wchar_t character);
  CSecStr& TrimLeft();
  CSecStr& TrimLeft(wchar_t character);

  /// New objects with a part of the text. Indexes and counts are clamped to the text: a negative first index or count
  /// is 0 for Left, Right and the first index of Mid; a negative count of Mid, or a first index beyond the text, gives
  /// the empty text.
  CSecStr Mid(int first, int count) const;
  CSecStr Mid(int first) const;
  CSecStr Left(int count) const;
  CSecStr Right(int count) const;

  /// Replaces every occurrence of `oldText`, from left to right and without overlap, and gives their number. A null
  /// `newText` deletes. The result is built in a string of its own, which is wiped, and the object is wiped and filled
  /// at the end; without a hit nothing is touched. Takes time linear in the lengths. Throws
  /// msl::utilities::SafeIntException (1) where a size leaves the range of 32 bits. A failure before the end leaves
  /// the object as it was.
  int Replace(const wchar_t* oldText, const wchar_t* newText);
  /// Adds text. The result is built in a string of its own, which is wiped; then the object is wiped and filled. A
  /// failure before that leaves the object as it was.
  CSecStr& operator+=(const CSecStr& text);
  CSecStr& operator+=(const wchar_t* text);
  /// Adds a character: private copy, wipe, growth over zeros, refill. Costs time linear in the length; a longer text
  /// is better put together with GetBuffer(int). The NUL character makes the length grow by one, the text reads as
  /// before. A failure after the wipe loses the text.
  CSecStr& operator+=(wchar_t character);
  /// Insert at an index, which is clamped to the text; give the new length. An empty text or the NUL character changes
  /// nothing. Private copies, wipe, growth over zeros, refill: a failure after the wipe loses the text. Throw
  /// msl::utilities::SafeIntException (1) where a size leaves the range of 32 bits.
  int Insert(int index, const wchar_t* text);
  int Insert(int index, wchar_t character);
  /// Insert at the end.
  void Append(const wchar_t* text);
  /// The same with the first `length` characters of `text`, up to a NUL. A null text with length 0 changes nothing;
  /// with another length it sets errno to EINVAL, calls _invalid_parameter and throws as the counted constructor.
  void Append(const wchar_t* text, int length);
  /// Replaces the text by a counted one. Throws as the counted constructor, with the object as it was.
  void SetString(const wchar_t* text, int length);
  /// Replaces the text by a formatted one, by the platform's wide format rules (%s is wide, %S narrow). The arguments
  /// may be the object's own text. A narrow secret does not belong into %S on Windows: the runtime may leave a copy.
  /// The result is built in a string of its own, which is wiped; then the object is wiped and filled. Throws
  /// COleException* 0x80070057 for a format that is none. A failure before the end leaves the object as it was.
  void Format(const wchar_t* format, ...);
  /// The same with the format text of a string resource. If there is none, the object ends up empty.
  void Format(UINT id, ...);
  /// Wipes and loads a string resource; nonzero on success. If there is none, gives 0 and puts the text back.
  int LoadStringW(HINSTANCE module, UINT id);
  int LoadStringW(UINT id);

 protected:
  /// What UpdateFindStringResourceHandleFunction has set.
  static HINSTANCE (*m_pFnFindStringResourceHandle)(UINT);

 private:
  CStringT<wchar_t>* m_pStr;
};

/// By CSecStr::Compare. A null text throws as Compare does.
VLHOSTKIT_API bool operator==(const CSecStr& a, const CSecStr& b);
VLHOSTKIT_API bool operator==(const CSecStr& a, const wchar_t* b);
VLHOSTKIT_API bool operator==(const wchar_t* a, const CSecStr& b);
VLHOSTKIT_API bool operator!=(const CSecStr& a, const CSecStr& b);
VLHOSTKIT_API bool operator!=(const CSecStr& a, const wchar_t* b);
VLHOSTKIT_API bool operator!=(const wchar_t* a, const CSecStr& b);
VLHOSTKIT_API bool operator<(const CSecStr& a, const CSecStr& b);

/// The joined text, in a new object. Temporaries are wiped.
VLHOSTKIT_API CSecStr operator+(const CSecStr& a, const CSecStr& b);
VLHOSTKIT_API CSecStr operator+(const CSecStr& a, const wchar_t* b);
VLHOSTKIT_API CSecStr operator+(const wchar_t* a, const CSecStr& b);

/// Secret narrow text: the twin of CSecStr with a much smaller surface. Lengths are bytes. Members of the same name
/// work, wipe and throw as those of CSecStr.
class VLHOSTKIT_API CSecStrA {
 public:
  /// Empty text, and a deep copy.
  CSecStrA();
  CSecStrA(const CSecStrA& other);
  /// The narrow form of a wide text, by the runtime's wcstombs_s in its current locale: no code page is named. The
  /// length is that of the wide text, whatever the conversion gave: what does not convert, and what does not fit into
  /// as many bytes, is cut, and the rest of the length is NUL bytes.
  CSecStrA(const CSecStr& text);
  /// As the constructors and the destructor of CSecStr.
  CSecStrA(const char* text);
  CSecStrA(const char* text, int length);
  ~CSecStrA();

  /// A deep copy of `other`, which may be this object.
  CSecStrA& operator=(const CSecStrA& other);
  /// Wipes first, then takes the narrow form of `text`; null leaves the object empty. All temporaries are wiped. A
  /// failure leaves the object empty.
  CSecStrA& operator=(wchar_t* text);

  /// As the members of CSecStr.
  operator const char*() const;
  char* GetBuffer() const;
  const char* GetString() const;
  int GetLength() const;
  char* GetBuffer(int n);
  void ReleaseBuffer(int n);
  void Empty();
  int Find(const char* text, int start) const;
  /// As CSecStr::Append of a counted text, but a null text is reported to _invalid_parameter whatever the length.
  void Append(const char* text, int length);
  /// As CSecStr::Insert.
  int Insert(int index, const char* text);

 private:
  CStringT<char> m_str;
};

#endif
