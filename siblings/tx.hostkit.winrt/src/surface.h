/// What differs between the targets: how a toast is seen, and what the machine is.
#ifndef TOAST_SURFACE_H
#define TOAST_SURFACE_H

#include <chrono>
#include <memory>

#include <vlhostkit/toast.h>

namespace toast {

/// A toast that can be seen, as long as the object lives. Belongs to the thread that made it.
class Surface {
 public:
  virtual ~Surface() = default;

  /// Handles a message that is for the surface, or for another window of the thread. False: it is neither, and whoever
  /// reads the thread's messages has to get it.
  virtual bool dispatch(const MSG& message) = 0;

  /// Whether the user has clicked it.
  virtual bool activated() const = 0;
};

/// Shows the texts, which must outlive the surface: they are not copied. On failure null, with the reason, which is
/// negative, in `result`.
std::unique_ptr<Surface> show(const secstring& title, const secstring& body, HRESULT& result);

/// How long a toast is to be seen that does not stay.
std::chrono::milliseconds displayTime();

/// Whether the machine is a tablet, or is being used as one.
bool isSlate();

}  // namespace toast

#endif
