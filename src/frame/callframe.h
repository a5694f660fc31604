/// The frame of an exported function: one record on entry, one on exit, and the result conventions.
///
///     DWORD result = ERROR_SUCCESS;
///     const CallFrame frame(kTag, L"vlSysCompareISO8601", ExitWith(L"vlSysCompareISO8601: returns nRet = 0x%x",
///     result));
///
/// Declared first in a function, after the result that it shows, so that all else is released before the exit record.
#ifndef VL_FRAME_CALLFRAME_H
#define VL_FRAME_CALLFRAME_H

#include "frame/lasterror.h"
#include "frame/log.h"

namespace vl {

/// An exit record that shows the result as it is when the function ends.
template <class Result>
class ExitWith {
 public:
  ExitWith(const wchar_t* format, const Result& result) : format_(format), result_(result) {}
  void operator()(const wchar_t* tag) const { txlogLog(tag, TXLOG_EXIT, format_, result_); }

 private:
  const wchar_t* format_;
  const Result& result_;
};

/// The same, of functions that end some of their failures without an exit record: only if `wanted` is true at the end.
template <class Result>
class ExitIf {
 public:
  ExitIf(const wchar_t* format, const Result& result, const bool& wanted) : exit_(format, result), wanted_(wanted) {}
  void operator()(const wchar_t* tag) const {
    if (wanted_) {
      exit_(tag);
    }
  }

 private:
  ExitWith<Result> exit_;
  const bool& wanted_;
};

/// An exit record without a result, of the functions that report by the last-error value: it must not be touched,
/// whoever's log this is.
class ExitPlain {
 public:
  explicit ExitPlain(const wchar_t* text) : text_(text) {}
  void operator()(const wchar_t* tag) const {
    const LastErrorGuard lastError;
    txlogLog(tag, TXLOG_EXIT, text_);
  }

 private:
  const wchar_t* text_;
};

/// Logs the exit only; for the functions whose habit is to have no entry record.
template <class Exit>
class ExitFrame {
 public:
  ExitFrame(const wchar_t* tag, Exit exit) : tag_(tag), exit_(exit) {}
  ~ExitFrame() { exit_(tag_); }
  ExitFrame(const ExitFrame&) = delete;
  ExitFrame& operator=(const ExitFrame&) = delete;

 private:
  const wchar_t* tag_;
  Exit exit_;
};

/// Logs entry and exit. `entryArguments` are those of the entry format.
template <class Exit>
class CallFrame : private ExitFrame<Exit> {
 public:
  template <class... Arguments>
  CallFrame(const wchar_t* tag, const wchar_t* entry, Exit exit, Arguments... entryArguments)
      : ExitFrame<Exit>(tag, exit) {
    txlogLog(tag, TXLOG_ENTRY, entry, entryArguments...);
  }
};

}  // namespace vl

#endif
