#include "linux/calendars/account_connection.h"

#include <utility>

namespace orvane::host {

AccountConnection::AccountConnection(AccountCalendar calendar, const Patience& patience,
                                     SharedPatience& others, MainActor& actor, Heard heard)
    : calendar_(std::move(calendar)),
      patience_(patience),
      actor_(actor),
      heard_(std::move(heard)),
      backOff_(patience.waits, actor),
      limit_(others) {}

void AccountConnection::use(AccountDirectory* directory) {
  drop();
  backOff_.reset();
  directory_ = directory;
  if (std::exchange(isBusy_, false)) tell(heard_.failed);
  if (directory_ != nullptr && span_) begin();
}

void AccountConnection::retry() {
  if (!backOff_.isWaiting()) return;
  backOff_.cutShort();
  begin();
}

void AccountConnection::fetch(const AccountSpan& span) {
  span_ = span;
  if (directory_ == nullptr || backOff_.isWaiting()) {
    tell(heard_.failed);
  } else if (isBusy_) {
    isAskedAgain_ = true;
  } else {
    begin();
  }
}

void AccountConnection::begin() {
  isBusy_ = true;
  isAskedAgain_ = false;
  limit_.join();
  if (client_) {
    ask();
  } else {
    open();
  }
}

void AccountConnection::open() {
  limit_.wait({patience_.opening, patience_.longest}, [this] { fail(); });
  AccountSigns signs{heard_.changed, [this] { tell([this] { fail(); }); }};
  question_ =
      directory_->open(calendar_, std::move(signs), [this](std::unique_ptr<AccountClient> client) {
        limit_.answered();
        if (!client) return fail();
        client_ = std::move(client);
        ask();
      });
}

void AccountConnection::ask() {
  limit_.wait({patience_.fetching, patience_.longest}, [this] { fail(); });
  question_.cancel();
  question_ =
      client_->fetch(*span_, [this](std::optional<AccountItems> items) { take(std::move(items)); });
}

void AccountConnection::take(std::optional<AccountItems> items) {
  limit_.answered();
  if (!items) return fail();
  backOff_.reset();
  isBusy_ = false;
  if (isAskedAgain_) begin();
  const auto fetched = heard_.fetched;
  fetched(std::move(*items));
}

void AccountConnection::fail() {
  if (!client_ && !isBusy_) return;
  drop();
  isAskedAgain_ = false;
  backOff_.wait([this] { begin(); });
  if (std::exchange(isBusy_, false)) tell(heard_.failed);
}

void AccountConnection::drop() {
  limit_.giveUp();
  question_.cancel();
  client_.reset();
}

void AccountConnection::tell(std::function<void()> what) {
  actor_.post([what = std::move(what), alive = std::weak_ptr(alive_)] {
    if (!alive.expired()) what();
  });
}

}  // namespace orvane::host
