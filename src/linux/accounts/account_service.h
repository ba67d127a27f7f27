// linux/accounts/ is what the calendar store and the module of the desktop's accounts say to each
// other: plain C++ interfaces, headers only. The module links a library that the program itself
// must do without, so it is loaded while the program runs; both come from one build.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "foundation/subscription.h"
#include "platform/ek_event_store.h"

namespace orvane::host {

// Everything here belongs to the main thread and never blocks it. What is asked for is answered in
// a later turn, once; ending the subscription gives the question up, and nothing is answered any
// more. No question has a time limit of its own: whoever asks sets it.

// One calendar or list that the user has switched on in the desktop's accounts.
struct AccountCalendar {
  std::string source;  // the service's own identifier, the same in every run
  std::string title;   // foreign text
  EKEntityType type = EKEntityType::event;

  friend bool operator==(const AccountCalendar&, const AccountCalendar&) = default;
};

// Which events are wanted, in seconds since 1970; tasks have no bounds.
struct AccountSpan {
  double start = 0;
  double end = 0;

  friend bool operator==(const AccountSpan&, const AccountSpan&) = default;
};

struct AccountItems {
  // One iCalendar object, time zones included: what may lie in the span, and everything that
  // recurs, since only the whole of a series tells where its occurrences are.
  std::string text;
  // The account waits for its user to sign in: this is what the service still has from before.
  bool wantsSignIn = false;
};

// One open calendar. Destroying it closes it; its signs come no more.
class AccountClient {
 public:
  virtual ~AccountClient() = default;
  // Nothing: it failed. One question at a time. From the first one on changes are reported that
  // touch what was last asked for.
  virtual Subscription fetch(const AccountSpan& span,
                             std::function<void(std::optional<AccountItems>)> fetched) = 0;
};

struct AccountSigns {
  std::function<void()> changed;  // something is different; many in a burst
  std::function<void()> died;     // the client is of no use any more
};

// The list of calendars. What it hands out must be destroyed before it.
class AccountDirectory {
 public:
  virtual ~AccountDirectory() = default;
  // Those that are enabled and selected, as of now.
  [[nodiscard]] virtual std::vector<AccountCalendar> calendars() const = 0;
  // Null: it cannot be opened. Signs may come as long as the client lives.
  virtual Subscription open(const AccountCalendar& calendar, AccountSigns signs,
                            std::function<void(std::unique_ptr<AccountClient>)> opened) = 0;
};

// The service as the module reaches it.
class AccountService {
 public:
  virtual ~AccountService() = default;
  // Null: the service cannot be reached. `changed` of the signs: calendars() differs, or may.
  virtual Subscription open(AccountSigns signs,
                            std::function<void(std::unique_ptr<AccountDirectory>)> opened) = 0;
};

// Whether this desktop has such a service at all, which may change while the program runs.
class Accounts {
 public:
  virtual ~Accounts() = default;
  // `found` is called when it is known, and again whenever it changes; null: there is none. Once
  // there was one it belongs to this object and stays as long; `found` is then called with the same
  // when it has come back after it was gone, and when it runs again after it had ended.
  virtual void watch(std::function<void(AccountService*)> found) = 0;
  // Nothing is called any more.
  virtual void stop() = 0;
};

}  // namespace orvane::host
