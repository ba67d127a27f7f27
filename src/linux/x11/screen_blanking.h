#pragma once

#include "foundation/main_actor.h"
#include "linux/x11/connection.h"

namespace orvane::host::x11 {

// Whether the server shows nothing at all: its screen saver is on, as it also is while the monitors
// are switched off to save power. Told of by the MIT-SCREEN-SAVER extension; a server without it is
// taken to be awake.
class ScreenBlanking {
 public:
  // Waits for the server's answers.
  explicit ScreenBlanking(Connection& connection);

  [[nodiscard]] bool isBlank() const { return isBlank_; }
  [[nodiscard]] Subject<>& changed() { return changed_; }

 private:
  void become(std::uint8_t state);

  bool isBlank_ = false;
  Subject<> changed_;
  Subscription events_;
};

}  // namespace orvane::host::x11
