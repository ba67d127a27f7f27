#pragma once

#include <array>

#include "foundation/subject.h"
#include "linux/x11/full_screen_watch.h"
#include "linux/x11/screen_blanking.h"
#include "linux/x11/screen_list.h"
#include "platform/session_sight.h"

namespace orvane::host::x11 {

// What of this display somebody may see, as far as all those tell who know something of it. What
// covers a single window is not among it: of that the server tells the window.
class Sight {
 public:
  // All of them outlive this.
  struct Witnesses {
    ScreenList& screens;
    ScreenBlanking& blanking;
    FullScreenWatch& fullScreen;
    SessionSight* session;  // may be null
  };

  explicit Sight(const Witnesses& witnesses);

  // There is no screen, all are blank, or the session as a whole is hidden.
  [[nodiscard]] bool isNone() const;
  // Whether nothing of this area, in pixels of the root, is to be seen at the desktop's level.
  [[nodiscard]] bool isBehindFullScreen(const PixelRect& area) const {
    return witnesses_.fullScreen.covers(area);
  }
  [[nodiscard]] Subject<>& changed() { return changed_; }

 private:
  const Witnesses witnesses_;
  Subject<> changed_;
  std::array<Subscription, 4> changes_;
};

}  // namespace orvane::host::x11
