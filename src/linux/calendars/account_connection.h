#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include "foundation/main_actor.h"
#include "linux/accounts/account_service.h"
#include "linux/calendars/back_off.h"
#include "linux/calendars/shared_patience.h"

namespace orvane::host {

// The connection to one calendar of the accounts: opened, asked, dropped when it fails, hangs or
// dies, and then opened and asked again after a while. Main thread only.
class AccountConnection {
 public:
  struct Heard {
    std::function<void(AccountItems)> fetched;
    std::function<void()> failed;   // this attempt; the next one follows by itself
    std::function<void()> changed;  // something may have; to be fetched when that suits
  };
  struct Patience {
    std::chrono::milliseconds opening{20000};
    std::chrono::milliseconds fetching{20000};
    // Of either, where others that were asked as well are answered meanwhile.
    std::chrono::milliseconds longest{180000};
    BackOff::Waits waits;
  };

  // Heard's functions are called in turns of their own, and may destroy this. The others' patience
  // is shared with all connections to the same service.
  AccountConnection(AccountCalendar calendar, const Patience& patience, SharedPatience& others,
                    MainActor& actor, Heard heard);
  AccountConnection(const AccountConnection&) = delete;
  AccountConnection& operator=(const AccountConnection&) = delete;

  // Opens the calendar of that directory from now on; null: there is none, and everything rests.
  void use(AccountDirectory* directory);
  // The next attempt, where one is waited for, is made now. If it fails too, the wait after it is
  // as long as it would have been: what is said to be back may be what ends at every attempt.
  void retry();
  // Followed by `fetched` or `failed`; one that is under way goes on and is followed by this one.
  // While there is no directory, or the next attempt is waited for, it fails.
  void fetch(const AccountSpan& span);

 private:
  void begin();
  void open();
  void ask();
  void take(std::optional<AccountItems> items);
  void fail();
  void drop();
  void tell(std::function<void()> what);

  const AccountCalendar calendar_;
  const Patience patience_;
  MainActor& actor_;
  const Heard heard_;
  AccountDirectory* directory_ = nullptr;
  std::optional<AccountSpan> span_;  // that was last asked for
  bool isBusy_ = false;
  bool isAskedAgain_ = false;
  BackOff backOff_;
  std::unique_ptr<AccountClient> client_;
  Subscription question_;
  SharedPatience::Waiter limit_;
  // Gone with this: what is told later is then told nobody.
  std::shared_ptr<int> alive_ = std::make_shared<int>(0);
};

}  // namespace orvane::host
