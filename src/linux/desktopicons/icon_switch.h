#pragma once

#include <memory>
#include <optional>

#include "linux/desktopicons/icon_backend.h"
#include "linux/desktopicons/icon_memory.h"
#include "linux/desktopicons/icon_script.h"

namespace orvane::host::desktopicons {

// Carries out wishes one after another, in their order; of several that wait, only the last counts.
// What the user had is written down before the first change and never overwritten by a further
// hiding. Where it cannot be written down nothing is hidden: what is not remembered could not be
// given back. Main thread only.
class IconSwitch {
 public:
  IconSwitch(std::unique_ptr<IconBackend> backend, IconMemory memory);
  IconSwitch(const IconSwitch&) = delete;
  IconSwitch& operator=(const IconSwitch&) = delete;
  ~IconSwitch();

  void request(IconWish wish);

 private:
  void next();
  void finished();
  void hide();
  void giveBack();

  const std::unique_ptr<IconBackend> backend_;
  const IconMemory memory_;
  std::optional<IconWish> waiting_;
  bool busy_ = false;
};

}  // namespace orvane::host::desktopicons
