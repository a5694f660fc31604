/// The log channel: every diagnostic of the vlhostkit libraries leaves through the two functions of this header.
///
/// Callers log without asking whether anybody listens. Unless the environment variable TXLOG asks for records, or the
/// program has set a sink, a call tests one number and returns.
///
/// Both functions may be called on any thread at any time, also late in a program's end. They return to the caller in
/// every case: they throw nothing, report nothing, and leave errno and the thread's last-error value (GetLastError, on
/// Windows) as they were. Nothing that is passed is used after the call. They are not for signal handlers.
///
/// TXLOG
///
/// Read once, at the first call and never while a library is loaded; later changes of the variable have no effect.
/// Items are separated by ";", and blanks around an item don't count. Case matters in paths and tags only.
///
///   stderr              write to the program's standard error
///   file=PATH           append to the file, which is made if need be (readable by its owner only, where the platform
///                       has a notion of it); PATH holds no ";"; one file at most. Several processes may share it
///   debugger            hand the records to the debugger (Windows only)
///   level=NAME,...      only these levels: note, error, trace, entry, exit, or all, which is what holds without it;
///                       none if no name is understood
///   tag=NAME,...        only these tags (at most 16); all tags without it
///
///   TXLOG="stderr;level=error"      TXLOG="file=C:\logs\hostkit.log;level=error,trace;tag=VLHOSTKIT"
///
/// Items that repeat add up. An item or name that is not understood is named on standard error, once, and the rest
/// counts; so is a TXLOG that names no destination, or is longer than 4095 characters, and it logs nothing.
/// A file that can't be opened or written is named on standard error, once; its records are lost, the program goes on.
///
/// LINES
///
/// A record is one line of UTF-8, ended by LF on all platforms and written at once, so that lines of several threads
/// and processes never mix. Its fields have one blank between them: time (UTC), process, thread, level, tag, text.
///
///   2026-11-22T21:43:26.123Z 4711 4712 exit VLHOSTKIT vlRegDeleteKey : ret=(0)
///   2026-11-22T21:43:26.124Z 4711 4712 trace txhostkit Domain \[4 bytes] 41 00 42 00
///
/// No text can forge a line or a field. In tag, text and label the backslash is written "\\", line feed "\n", carriage
/// return "\r", tab "\t"; every other control character (DEL and U+0080 to U+009F included), the separators U+2028 and
/// U+2029, and the marks that reorder text (U+202A to U+202E, U+2066 to U+2069) as "\u" and four hex digits; in tags
/// also the blank. Lone surrogates and what is no code point become U+FFFD. So "\[" can only come from the channel:
///
///   \[cut]                               text or tag was longer than its limit
///   \[N bytes] HEX                       binary data
///   \[N bytes, last M left out] HEX      more than TXLOG_MAX_DATA bytes
///   \[no data]                           a null pointer or a negative size
///
/// A level without a name is written "level" and its number.
#ifndef TXLOGU_TXLOGU_H
#define TXLOGU_TXLOGU_H

#include <stddef.h>
#include <vlhostkit/export.h>

#ifdef __cplusplus
extern "C" {
#endif

/// The levels that the libraries use. Any other number is a level too, without a name.
enum txlogLevel {
  TXLOG_NOTE = 0,   ///< a note that is no error
  TXLOG_ERROR = 1,  ///< a failure that ends the operation
  TXLOG_TRACE = 2,  ///< steps and values along the way
  TXLOG_ENTRY = 8,  ///< a function begins
  TXLOG_EXIT = 16   ///< a function ends, with its result
};

/// The bit of a level in a set of levels. All levels below 0 and above 30 share one bit.
#define TXLOG_LEVEL_BIT(level) (1u << ((unsigned)(level) < 31u ? (unsigned)(level) : 31u))

/// The set of all levels.
#define TXLOG_ALL_LEVELS 0xFFFFFFFFu

/// The longest text or label of a record and the longest tag of a line, in characters (wchar_t units), and the most
/// bytes of binary data that a line shows. A text or label that is longer is cut, for a sink also; tags and data are
/// cut in lines only.
#define TXLOG_MAX_TEXT 4096
#define TXLOG_MAX_TAG 64
#define TXLOG_MAX_DATA 512

/// Logs a text.
///
/// `format` takes the conversions %d (int), %x (unsigned int, lower case), %p (pointer: all its hex digits, upper case,
/// no prefix), %s and %ls (const wchar_t*), %S (const char*: the ANSI code page on Windows, UTF-8 elsewhere) and %%, on
/// all platforms alike and without flags, width or precision. A null string prints "(null)". Since the size of its
/// argument is unknown, any other conversion ends the formatting: it and the rest of the format are taken as they
/// stand, and no further argument is read.
///
/// A null `tag` or `format` counts as the text "(null)".
///
///     txlogLog(L"txhostkit", TXLOG_ERROR, L"vlSysGetFixedDriveW : %s has type %d", root, type);
TXLOGU_API void txlogLog(const wchar_t* tag, int level, const wchar_t* format, ...);

/// Logs `byteCount` bytes at `data` under `label`. A null `data` or a negative `byteCount` is recorded as such and
/// nothing is read; a null `tag` or `label` counts as the text "(null)".
TXLOGU_API void txlogLogBin(const wchar_t* tag, int level, const void* data, int byteCount, const wchar_t* label);

/// A record as a sink gets it. Valid during the call only.
typedef struct txlogRecord {
  long long time;           ///< milliseconds since 1 January 1970 UTC
  unsigned long processId;  ///< of the process that logs
  unsigned long threadId;   ///< of its thread
  int level;                ///< one of txlogLevel, or another number
  const wchar_t* tag;       ///< as passed, but never null
  const wchar_t* format;    ///< the pointer passed as `format`; null for binary data
  const wchar_t* text;      ///< the formatted text or the label, nothing escaped, NUL-terminated
  size_t textLength;        ///< its length without the terminator, at most TXLOG_MAX_TEXT
  int textCut;              ///< nonzero if the text was longer
  int binary;               ///< nonzero if the record comes from txlogLogBin
  const void* data;         ///< the bytes passed; null if they can't be read (null pointer, negative size)
  int byteCount;            ///< their number, 0 if they can't be read
} txlogRecord;

/// Takes a record. Called on the logging thread, one call at a time in the whole process; other logging threads wait
/// for its return, so it must not wait for a thread that may log, and must not end its thread. Whatever it does to
/// errno and the last-error value is undone, and an exception that leaves it is swallowed. Records that are logged on
/// the same thread meanwhile are dropped.
typedef void (*txlogSink)(void* context, const txlogRecord* record);

/// Results of txlogSetSink.
enum txlogResult {
  TXLOG_DONE = 0,
  TXLOG_REFUSED = 1  ///< called from within a sink, or so late in the process's end that the channel is lost
};

/// Hands all records whose level is in `levels` (bits of TXLOG_LEVEL_BIT) to `sink`, together with `context`, in place
/// of what TXLOG asks for: no other level is recorded and the tags of TXLOG don't count. A null `sink` gives TXLOG its
/// say again. At the return the former sink is no longer running and will not be called any more.
///
/// Returns TXLOG_DONE, or TXLOG_REFUSED and changes nothing.
TXLOGU_API int txlogSetSink(txlogSink sink, void* context, unsigned levels);

#ifdef __cplusplus
}  // extern "C"
#endif

#endif
