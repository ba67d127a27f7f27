#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "linux/calendars/account_connection.h"
#include "linux/calendars/change_burst.h"
#include "linux/calendars/text_reading.h"

namespace orvane::host {

// Has a text read in the window of the moment; see TextReading::read().
using ReadText = std::function<void(std::string text, TextReading::Done done)>;

// One calendar of the accounts, kept up to date: what was last read of it stays until there is
// something newer. Main thread only.
class AccountFeed {
 public:
  struct Surroundings {
    MainActor& actor;
    AccountConnection::Patience patience;
    SharedPatience& others;
    ReadText readText;
    std::function<AccountSpan()> span;
    // How often anybody has been told what this holds.
    std::function<std::uint64_t()> tellings;
    std::function<void()> settled;  // what this has may differ
    std::function<void()> news;     // it does, and whoever was told before should ask again
  };
  enum class Outcome { unknown, readable, refused };

  AccountFeed(AccountCalendar calendar, Surroundings surroundings);
  AccountFeed(const AccountFeed&) = delete;
  AccountFeed& operator=(const AccountFeed&) = delete;

  [[nodiscard]] const AccountCalendar& calendar() const { return calendar_; }
  void rename(std::string title) { calendar_.title = std::move(title); }

  void use(AccountDirectory* directory) { connection_.use(directory); }
  void retry() { connection_.retry(); }
  void look() { connection_.fetch(surroundings_.span()); }

  // Null while nothing could be read.
  [[nodiscard]] std::shared_ptr<const ShelfItem> item() const { return content_.item; }
  [[nodiscard]] Outcome outcome() const { return outcome_; }
  // It was not for want of an answer.
  [[nodiscard]] bool hasReaderFailed() const { return hasReaderFailed_; }

 private:
  void read(AccountItems items);
  void take(const TextContent* content, TextFailure failure, bool wantsSignIn);
  void note(bool holdsAnything, bool wantsSignIn);
  void settle(Outcome outcome, bool isOtherContent);
  void announce();

  AccountCalendar calendar_;
  const Surroundings surroundings_;
  TextContent content_;
  Outcome outcome_ = Outcome::unknown;
  bool hasReaderFailed_ = false;
  bool isProven_ = false;  // that it can be read
  Subscription proof_;
  std::uint64_t readings_ = 0;              // that were begun …
  std::uint64_t latest_ = 0;                // … and the one that was taken last
  bool isLooking_ = false;                  // because of a burst
  std::optional<std::uint64_t> announced_;  // the tellings when its announcement was made early
  ChangeBurst burst_;
  AccountConnection connection_;
  std::shared_ptr<int> alive_ = std::make_shared<int>(0);
};

}  // namespace orvane::host
