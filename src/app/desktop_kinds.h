#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "app/returning_desktop.h"

namespace orvane {

// The kinds of desktop that there may be, the best first, and which of them there was last.
class DesktopKinds {
 public:
  struct Kind {
    std::function<bool()> isNamed;  // asked anew for each attempt: whether one could be there
    std::function<ReturningDesktop::Opened(const ReturningDesktop::Attempt&)> open;
  };
  // `nothingNamed` is the sentence for the case that none could be there.
  DesktopKinds(std::vector<Kind> kinds, std::string nothingNamed);

  // Opens the best that there is, or answers why there is none. An attempt for the same desktop
  // again leaves all others alone.
  [[nodiscard]] ReturningDesktop::Opened open(const ReturningDesktop::Attempt& attempt);

 private:
  [[nodiscard]] bool isAskedFor(std::size_t index, const ReturningDesktop::Attempt& attempt) const;

  const std::vector<Kind> kinds_;
  const std::string nothingNamed_;
  std::optional<std::size_t> last_;
};

}  // namespace orvane
