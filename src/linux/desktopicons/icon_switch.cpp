#include "linux/desktopicons/icon_switch.h"

#include <utility>

namespace orvane::host::desktopicons {

IconSwitch::IconSwitch(std::unique_ptr<IconBackend> backend, IconMemory memory)
    : backend_(std::move(backend)), memory_(std::move(memory)) {}

IconSwitch::~IconSwitch() {
  waiting_.reset();
  backend_->finish();
}

void IconSwitch::request(IconWish wish) {
  waiting_ = wish;
  next();
}

void IconSwitch::next() {
  if (busy_ || !waiting_) return;
  busy_ = true;
  if (*std::exchange(waiting_, std::nullopt) == IconWish::hide) {
    hide();
  } else {
    giveBack();
  }
}

void IconSwitch::finished() {
  busy_ = false;
  next();
}

// A record from before, perhaps of a run that crashed, is older than what is there now and
// therefore nearer to what the user chose.
void IconSwitch::hide() {
  if (const auto known = memory_.find(backend_->name())) {
    return backend_->hide(*known, [this](Outcome) { finished(); });
  }
  backend_->capture([this](const std::optional<IconState>& state) {
    if (!state || !memory_.remember(backend_->name(), *state)) return finished();
    backend_->hide(*state, [this](Outcome outcome) {
      if (outcome == Outcome::refused) memory_.forget(backend_->name());
      finished();
    });
  });
}

// A desktop that does not answer now is given its icons back another time: the record stays.
void IconSwitch::giveBack() {
  const auto known = memory_.find(backend_->name());
  if (!known) return finished();
  backend_->giveBack(*known, [this](Outcome outcome) {
    if (outcome == Outcome::done) memory_.forget(backend_->name());
    finished();
  });
}

}  // namespace orvane::host::desktopicons
