/// The session that the process runs in.
#ifndef VLPLATFORM_MACHINE_SESSIONS_H
#define VLPLATFORM_MACHINE_SESSIONS_H

#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include <vlplatform/sessions.h>

namespace vlplatform {

/// At start the user who started the process is logged on, with the computer's account domain. Thread-safe.
class VLPLATFORM_API Sessions {
 public:
  struct User {
    std::wstring name;
    std::wstring domain;
  };

  void reset();
  /// Two empty texts: nobody is logged on.
  void setUser(std::wstring_view domain, std::wstring_view name);
  User user() const;

 private:
  mutable std::mutex mutex_;
  std::optional<User> user_;
};

}  // namespace vlplatform

#endif
