#pragma once

#include <functional>
#include <optional>
#include <string>

namespace orvane::host::desktopicons {

// How a desktop's icons stood, and what we set instead, in terms that only the backend reads.
struct IconState {
  std::string before;   // may say that nothing was set
  std::string written;  // while this is still in place, the icons are hidden because we hid them

  friend bool operator==(const IconState&, const IconState&) = default;
};

// What came of a change. Refused: nothing was changed. Unknown: the desktop did not answer in time,
// and may carry it out yet.
enum class Outcome { done, refused, unknown };

// What has come to the desktop since its state was captured, on a new screen perhaps.
struct NewIcons {
  IconState alone;
  IconState together;  // with what was captured before, which is as it was
};

// Where one kind of desktop keeps whether it shows icons. Everything is answered in a later turn or
// at once, exactly once, and within seconds. Destroying the backend drops what is under way. Main
// thread only.
class IconBackend {
 public:
  virtual ~IconBackend() = default;

  // Tells records of different backends apart; never changes.
  [[nodiscard]] virtual std::string name() const = 0;
  // How the icons stand, and what hiding them would write. Nothing where the desktop cannot be
  // asked or has no icons to hide.
  virtual void capture(std::function<void(std::optional<IconState>)> captured) = 0;
  // Nothing where nothing has come.
  virtual void captureNew(const IconState& known,
                          std::function<void(std::optional<NewIcons>)> captured) {
    (void)known;
    captured(std::nullopt);
  }
  virtual void hide(const IconState& state, std::function<void(Outcome)> done) = 0;
  // Gives back what was there before, unless somebody else has changed it since; that counts as
  // done too.
  virtual void giveBack(const IconState& state, std::function<void(Outcome)> done) = 0;
  // The program ends: what is on its way and would be lost with it is waited for, a third of a
  // second at most, and answered.
  virtual void finish() {}
};

}  // namespace orvane::host::desktopicons
