#include "linux/desktopicons/icon_switch.h"

#include <utility>

namespace orvane::host::desktopicons {

IconSwitch::IconSwitch(std::unique_ptr<IconBackend> backend, IconMemory memory)
    : backend_(std::move(backend)), memory_(std::move(memory)) {}

IconSwitch::~IconSwitch() {
  waiting_.reset();
  looksForNew_ = false;
  backend_->finish();
}

void IconSwitch::request(IconWish wish) {
  waiting_ = last_ = wish;
  next();
}

void IconSwitch::lookForNew() {
  if (last_ != IconWish::hide) return;
  looksForNew_ = true;
  next();
}

void IconSwitch::next() {
  if (busy_) return;
  const auto wish = std::exchange(waiting_, std::nullopt);
  const bool looksForNew = std::exchange(looksForNew_, false) && !wish;
  busy_ = wish || looksForNew;
  if (wish == IconWish::hide) {
    hide();
  } else if (wish == IconWish::show) {
    giveBack();
  } else if (looksForNew) {
    hideNew();
  }
}

void IconSwitch::finished() {
  busy_ = false;
  next();
}

// A record from before, perhaps of a run that crashed, is older than what is there now and
// therefore nearer to what the user chose.
void IconSwitch::hide() {
  if (const auto known = memory_.find(backend_->name())) return hideAgain(*known);
  backend_->capture([this](const std::optional<IconState>& state) {
    if (!state || !memory_.remember(backend_->name(), *state)) return finished();
    backend_->hide(*state, [this](Outcome outcome) {
      if (outcome == Outcome::refused) memory_.forget(backend_->name());
      finished();
    });
  });
}

void IconSwitch::hideAgain(const IconState& known) {
  backend_->captureNew(known, [this, known](const std::optional<NewIcons>& came) {
    const bool isRemembered = came && memory_.remember(backend_->name(), came->together);
    backend_->hide(isRemembered ? came->together : known, [this](Outcome) { finished(); });
  });
}

void IconSwitch::hideNew() {
  const auto known = memory_.find(backend_->name());
  if (!known) return finished();
  backend_->captureNew(*known, [this](const std::optional<NewIcons>& came) {
    if (!came || !memory_.remember(backend_->name(), came->together)) return finished();
    backend_->hide(came->alone, [this](Outcome) { finished(); });
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
