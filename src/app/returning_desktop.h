#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/return_attempts.h"
#include "app/returning_window.h"
#include "platform/desktop_loss.h"
#include "platform/notification_center.h"
#include "platform/ns_window.h"

namespace orvane {

// The desktop as the logic sees it all along, whichever connection stands behind it. When the
// desktop is lost there are no screens, and windows keep what they are told; when it, or another
// one, is there again, windows that were on the screen are so again. All that anybody hears of it
// is that the screens have changed. Main thread only.
class ReturningDesktop final : public WindowServer {
 public:
  struct Attempt {
    Duration patience;  // how long a desktop that says nothing is waited for
    // Whether there is no more use in it, which may be so before that.
    std::function<bool()> isInVain;
    // To be called at most once, also within a turn of the desktop's own.
    std::function<void(const DesktopLoss&)> onLost;
    // Soon after a loss. A desktop that is started anew may take longer than a lesser one beside
    // it, on which the board would then stay.
    bool isForTheSame = false;
  };
  // Either a desktop or the sentences that tell why there is none.
  struct Opened {
    std::unique_ptr<WindowServer> server;
    std::vector<std::string> failures;
  };
  // The world. All of it must outlive the desktop.
  struct Environment {
    MainActor& mainActor;
    NotificationCenter& notificationCenter;
    // Looks anew each time for what there is.
    std::function<Opened(const Attempt&)> open;
    std::function<bool()> sessionHasEnded;
    // The desktop will not be there any more; why, as a sentence.
    std::function<void(const std::string&)> gaveUp;
    ReturnPolicy policy = {};
  };

  explicit ReturningDesktop(Environment environment);
  ReturningDesktop(const ReturningDesktop&) = delete;
  ReturningDesktop& operator=(const ReturningDesktop&) = delete;
  ~ReturningDesktop() override;

  // Opens the desktop for the first time, waiting for no longer than `patience`. Answers why there
  // is none; nothing when all is well.
  [[nodiscard]] std::vector<std::string> open(Duration patience);

  [[nodiscard]] std::vector<NSScreen> screens() const override;
  [[nodiscard]] std::optional<NSScreen> mainScreen() const override;
  [[nodiscard]] std::shared_ptr<NSWindow> makeWindow(Rect contentRect, unsigned styleMask,
                                                     NSBackingStoreType backing,
                                                     bool defer) override;
  // While there is no desktop, that of the last one.
  [[nodiscard]] std::int32_t windowLevelForKey(CGWindowLevelKey key) const override;

 private:
  std::vector<std::string> connect(Duration patience);
  bool reconnect(Duration patience);
  void lost(const DesktopLoss& loss);
  void gaveUp(ReturnAttempts::End end);
  void announceScreens();
  void bringWindowsBack();
  [[nodiscard]] std::vector<std::shared_ptr<ReturningWindow>> windows() const;

  const Environment environment_;
  std::unique_ptr<WindowServer> server_;
  std::int32_t desktopLevel_ = 0;
  std::int32_t backstopLevel_ = 0;
  std::string lostWhat_;
  std::vector<std::weak_ptr<ReturningWindow>> windows_;
  Subscription loyalty_;  // while it is on, only the kind of desktop that was lost will do
  ReturnAttempts attempts_;
  // Another one for each connection, so that nothing is heard of those before.
  std::shared_ptr<bool> connection_;
};

}  // namespace orvane
