/// Counts what the runtime's functions report to the invalid parameter handler.
#ifndef TESTS_PLATFORM_INVALIDPARAMETERS_H
#define TESTS_PLATFORM_INVALIDPARAMETERS_H

#include <cerrno>
#include <utility>

#include <vlplatform/crt.h>

/// Is the process's handler as long as it lives.
class InvalidParameters {
 public:
  InvalidParameters() : previous_(_set_invalid_parameter_handler(&count)) {}
  ~InvalidParameters() { _set_invalid_parameter_handler(previous_); }
  InvalidParameters(const InvalidParameters&) = delete;
  InvalidParameters& operator=(const InvalidParameters&) = delete;

  /// Whether `call` gives `result`, and reports once and leaves errno as `error` says: 0 for no report and no change.
  template <class Call, class Result>
  bool after(Call call, Result result, int error) {
    errno = 0;
    reports_ = 0;
    const bool expected = std::forward<Call>(call)() == result;
    return expected && errno == error && reports_ == (error == 0 || error == EILSEQ ? 0 : 1);
  }

 private:
  static void count(const wchar_t*, const wchar_t*, const wchar_t*, unsigned, std::uintptr_t) { ++reports_; }

  static inline int reports_ = 0;
  _invalid_parameter_handler previous_;
};

#endif
