#include "linux/x11/sight.h"

namespace orvane::host::x11 {

Sight::Sight(const Witnesses& witnesses) : witnesses_(witnesses) {
  const auto tell = [this] { changed_.send(); };
  changes_[0] = witnesses_.screens.changed().subscribe(tell);
  changes_[1] = witnesses_.blanking.changed().subscribe(tell);
  changes_[2] = witnesses_.fullScreen.changed().subscribe(tell);
  if (witnesses_.session) changes_[3] = witnesses_.session->changed().subscribe(tell);
}

bool Sight::isNone() const {
  return witnesses_.screens.screens().empty() || witnesses_.blanking.isBlank() ||
         (witnesses_.session && witnesses_.session->isHidden());
}

}  // namespace orvane::host::x11
