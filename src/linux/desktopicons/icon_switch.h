#pragma once

#include <memory>
#include <optional>

#include "linux/desktopicons/icon_backend.h"
#include "linux/desktopicons/icon_memory.h"
#include "linux/desktopicons/icon_script.h"

namespace orvane::host::desktopicons {

// Carries out wishes one after another, in their order; of several that wait, only the last counts.
// What the user had is written down before the first change and never overwritten by a further
// hiding, which only adds what has come since. Where it cannot be written down nothing is hidden:
// what is not remembered could not be given back. Main thread only.
class IconSwitch {
 public:
  IconSwitch(std::unique_ptr<IconBackend> backend, IconMemory memory);
  IconSwitch(const IconSwitch&) = delete;
  IconSwitch& operator=(const IconSwitch&) = delete;
  ~IconSwitch();

  void request(IconWish wish);
  // There may be icons that were not there when the others were hidden: where hidden is what is
  // wished, they are hidden too, and nothing else is touched.
  void lookForNew();

 private:
  void next();
  void finished();
  void hide();
  void hideAgain(const IconState& known);
  void hideNew();
  void giveBack();

  const std::unique_ptr<IconBackend> backend_;
  const IconMemory memory_;
  std::optional<IconWish> waiting_;
  std::optional<IconWish> last_;
  bool looksForNew_ = false;
  bool busy_ = false;
};

}  // namespace orvane::host::desktopicons
