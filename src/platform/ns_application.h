#pragma once

namespace orvane {

enum class NSApplicationActivationPolicy : int { regular = 0, accessory = 1, prohibited = 2 };

// The program as the desktop sees it. Main thread only.
class NSApplication {
 public:
  virtual ~NSApplication() = default;

  virtual void setActivationPolicy(NSApplicationActivationPolicy policy) = 0;
  // Lets the windows that come next stand before those of other programs.
  virtual void activate(bool ignoringOtherApps) = 0;
  // Ends the program in an orderly way, in a later turn of the loop.
  virtual void terminate() = 0;
};

}  // namespace orvane
