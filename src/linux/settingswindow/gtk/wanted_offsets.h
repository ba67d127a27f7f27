#pragma once

#include <map>
#include <optional>
#include <string>

namespace orvane::window {

// How far parts of a window are to be scrolled as soon as they are long enough, in points by the
// parts' names. A wish is met once, and the user who scrolls meanwhile wants something else.
class WantedOffsets {
 public:
  using Offsets = std::map<std::string, double>;

  void want(Offsets offsets) { offsets_ = std::move(offsets); }
  [[nodiscard]] bool isWaiting(const std::string& part) const { return offsets_.contains(part); }
  // How far to scroll a part that can be scrolled that far; nothing while it cannot, and then it
  // goes on waiting.
  [[nodiscard]] std::optional<double> take(const std::string& part, double farthest);
  void giveUp(const std::string& part) { offsets_.erase(part); }
  // Those that wait.
  [[nodiscard]] const Offsets& offsets() const { return offsets_; }

 private:
  Offsets offsets_;
};

}  // namespace orvane::window
