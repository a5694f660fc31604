/// The machine's network: whether it is there, and which user principal names a domain answers for.
#ifndef VLPLATFORM_MACHINE_NETWORK_H
#define VLPLATFORM_MACHINE_NETWORK_H

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include <vlplatform/machine/guarded.h>
#include <vlplatform/network.h>

namespace vlplatform {

/// At start the network is alive if the computer at hand has an interface up besides loopback, and no principal name
/// is known. Thread-safe.
class VLPLATFORM_API Network {
 public:
  void reset() { facts_.reset(); }
  void setAlive(bool alive) { facts_.set(&Facts::alive, alive); }
  bool alive() const;

  /// "alice@corp.example" is `samName`, "CORP\alice". Principal names are case-insensitive.
  void addPrincipal(std::wstring_view principal, std::wstring_view samName);
  /// Whether a translation without a buffer is a success (as at start), or fails with ERROR_INSUFFICIENT_BUFFER as
  /// platforms of some versions do it.
  void setSizeQuerySucceeds(bool succeeds) { facts_.set(&Facts::sizeQuerySucceeds, succeeds); }
  bool sizeQuerySucceeds() const { return facts_.get(&Facts::sizeQuerySucceeds); }

  /// For the stand-in's functions: 0, ERROR_NONE_MAPPED or ERROR_NO_SUCH_DOMAIN.
  DWORD translate(std::wstring_view principal, std::wstring* samName) const;

 private:
  struct Facts {
    std::optional<bool> alive{};
    bool sizeQuerySucceeds = true;
    std::map<std::wstring, std::wstring> principals{};  // by the name in lower case
  };
  Guarded<Facts> facts_;
};

}  // namespace vlplatform

#endif
