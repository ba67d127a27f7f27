#include "linux/calendars/account_feed.h"

#include <chrono>
#include <utility>

namespace orvane::host {
namespace {

// A service calls an account connected before the account's server has asked who is there. Only
// what has been empty for so long, without a sign-in being asked for, is known to be.
constexpr std::chrono::seconds timeToAskForASignIn{30};

}  // namespace

AccountFeed::AccountFeed(AccountCalendar calendar, Surroundings surroundings)
    : calendar_(std::move(calendar)),
      surroundings_(std::move(surroundings)),
      burst_(
          surroundings_.actor,
          [this] {
            isLooking_ = true;
            look();
          },
          [this] { announce(); }),
      connection_(calendar_, surroundings_.patience, surroundings_.others, surroundings_.actor,
                  {[this](AccountItems items) { read(std::move(items)); },
                   [this] { settle(content_.item ? outcome_ : Outcome::refused, false); },
                   [this] { burst_.signal(); }}) {}

void AccountFeed::read(AccountItems items) {
  surroundings_.readText(
      std::move(items.text),
      [this, alive = std::weak_ptr(alive_), number = ++readings_, wantsSignIn = items.wantsSignIn](
          const TextContent* content, TextFailure failure) {
        // What takes long to read may be overtaken by what came after it.
        if (alive.expired() || number < latest_) return;
        latest_ = number;
        take(content, failure, wantsSignIn);
      });
}

void AccountFeed::take(const TextContent* content, TextFailure failure, bool wantsSignIn) {
  hasReaderFailed_ = content == nullptr && failure == TextFailure::program;
  if (content == nullptr) return settle(content_.item ? outcome_ : Outcome::refused, false);
  // Nothing may mean that there is nothing in these days, or that the service has not kept it. Once
  // it could be read it is not refused, and what was read is still the best there is.
  const bool holdsAnything = content->item->holdsEvents || content->item->holdsTasks;
  note(holdsAnything, wantsSignIn);
  if (wantsSignIn && !holdsAnything) {
    return settle(isProven_ ? outcome_ : Outcome::refused, false);
  }
  const bool isOther = !content_.item || content_.print != content->print;
  content_ = *content;
  settle(Outcome::readable, isOther);
}

void AccountFeed::note(bool holdsAnything, bool wantsSignIn) {
  isProven_ = isProven_ || holdsAnything;
  if (isProven_ || wantsSignIn) {
    proof_.cancel();
  } else if (!proof_) {
    proof_ = surroundings_.actor.after(timeToAskForASignIn, [this] {
      isProven_ = true;
      proof_.cancel();
    });
  }
}

void AccountFeed::settle(Outcome outcome, bool isOtherContent) {
  const bool isChanged = std::exchange(outcome_, outcome) != outcome || isOtherContent;
  const bool isOfBurst = std::exchange(isLooking_, false);
  // Who has asked between an early announcement and now was told what had been before.
  const auto announced = std::exchange(announced_, std::nullopt);
  const bool isOwed = announced ? *announced != surroundings_.tellings() : !isOfBurst;
  burst_.looked(isChanged, isChanged && isOwed);
  surroundings_.settled();
}

void AccountFeed::announce() {
  if (isLooking_) announced_ = surroundings_.tellings();
  surroundings_.news();
}

}  // namespace orvane::host
