#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "foundation/main_actor.h"
#include "linux/accounts/account_service.h"
#include "linux/calendars/account_connection.h"
#include "linux/calendars/back_off.h"

namespace orvane::host {

// The connection to the list of the accounts' calendars: opened, and after it failed, hung or ended
// opened again after a while. Main thread only.
class DirectoryConnection {
 public:
  struct Heard {
    std::function<void()> listed;  // the directory is there, or tells something else than before
    // It is about to go, or could not be had: whatever came from it must be given back now.
    std::function<void()> lost;
  };

  DirectoryConnection(const AccountConnection::Patience& patience, MainActor& actor, Heard heard)
      : patience_(patience),
        actor_(actor),
        heard_(std::move(heard)),
        backOff_(patience.waits, actor) {}
  DirectoryConnection(const DirectoryConnection&) = delete;
  DirectoryConnection& operator=(const DirectoryConnection&) = delete;

  // Begins; said again of the same service, it makes an attempt that is waited for now. The service
  // must outlive this, or stop() be called before it goes.
  void use(AccountService& service);
  // Nothing is heard any more. Whatever came from the directory must have been given back.
  void stop();
  // Null while there is none.
  [[nodiscard]] AccountDirectory* directory() const { return directory_.get(); }

 private:
  void open();
  void lose();
  void listSoon();

  const AccountConnection::Patience patience_;
  MainActor& actor_;
  const Heard heard_;
  AccountService* service_ = nullptr;
  BackOff backOff_;
  std::unique_ptr<AccountDirectory> directory_;
  Subscription question_;
  Subscription limit_;
  Subscription listing_;
  Subscription end_;
};

}  // namespace orvane::host
