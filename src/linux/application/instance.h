// application/ makes the program one of its kind in the session: one instance, which others can ask
// to do something over the session bus.
#pragma once

#include <gio/gio.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "foundation/main_actor.h"

namespace orvane::host {

// What the running program does when it is asked from outside.
struct ApplicationAction {
  std::string name;
  std::function<void()> perform;
};

struct ApplicationOptions {
  // Null: there is no session bus, or none that answers, and a lock is the only guard.
  GDBusConnection* connection = nullptr;
  // Of the session's bus, whether it answers or not, which tells apart sessions that share a
  // runtime folder; empty: there is none.
  std::string busAddress;
  // $XDG_RUNTIME_DIR, where the lock lies; empty: without a bus there is then no guard at all.
  std::filesystem::path runtimeFolder;
  // The bus started this process because of a call: if the first one is an activation, it is the
  // launch itself.
  bool startedByBus = false;
  // The session started this process by itself, so that where another one runs already, nobody asks
  // that one for anything.
  bool startedWithSession = false;
  // What this process was started with to let a window take the focus: an XDG activation token or a
  // startup id, else empty. The running instance gets it, if there is one.
  std::string activationToken;
  // Called in a turn of the loop when the program was started again or activated.
  std::function<void()> activate;
  std::vector<ApplicationAction> actions;
  // Called just before either with such a token, where whoever asked gave one.
  std::function<void(const std::string& token)> takeActivationToken;
};

// The claim to be the one instance, given up with this object. While it stands, org.freedesktop.
// Application is exported under the program's id (Desktop Entry Specification, "D-Bus Activation"),
// and its calls are carried out in turns of the loop.
class Instance {
 public:
  virtual ~Instance() = default;
};

enum class InstanceOutcome {
  first,     // `instance` is set, unless there is nothing at all that could guard it
  forwarded  // another one runs, and was asked to show its settings if a person started this one
};

struct InstanceClaim {
  InstanceOutcome outcome = InstanceOutcome::first;
  std::unique_ptr<Instance> instance;
};

// A bus that was too slow for one start may be quick enough for the next: the lock is taken with a
// bus, too, and counts like the name. Waits at most a few seconds for the bus, and one for the
// running instance. Main thread only; the actor outlives the instance.
[[nodiscard]] InstanceClaim claimInstance(ApplicationOptions options, MainActor& mainActor);

}  // namespace orvane::host
