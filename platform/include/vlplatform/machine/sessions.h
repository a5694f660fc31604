/// The session that the process runs in.
#ifndef VLPLATFORM_MACHINE_SESSIONS_H
#define VLPLATFORM_MACHINE_SESSIONS_H

#include <optional>
#include <string>
#include <string_view>

#include <vlplatform/machine/guarded.h>
#include <vlplatform/sessions.h>

namespace vlplatform {

/// At start the user who started the process is logged on, with the computer's account domain. Thread-safe.
class VLPLATFORM_API Sessions {
 public:
  struct User {
    std::wstring name;
    std::wstring domain;
  };

  void reset() { facts_.reset(); }
  /// Two empty texts: nobody is logged on.
  void setUser(std::wstring_view domain, std::wstring_view name) {
    facts_.set(&Facts::user, User{std::wstring(name), std::wstring(domain)});
  }
  User user() const;

 private:
  struct Facts {
    std::optional<User> user{};
  };
  Guarded<Facts> facts_;
};

}  // namespace vlplatform

#endif
