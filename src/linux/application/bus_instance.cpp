#include "linux/application/bus_instance.h"

#include <algorithm>
#include <iostream>
#include <utility>

#include "linux/gio/exported_object.h"

namespace orvane::host::application {
namespace {

using gio::CallReply;
using gio::VariantPtr;

// Milliseconds. The bus answers at once or has a problem of its own; the running instance may be
// waiting for its desktop, and whoever started us waits for us.
constexpr int kBusLimit = 5000;
constexpr int kOtherLimit = 1000;

constexpr const char* kDescription = R"xml(
<node>
  <interface name="org.freedesktop.Application">
    <method name="Activate">
      <arg name="platform_data" type="a{sv}" direction="in"/>
    </method>
    <method name="Open">
      <arg name="uris" type="as" direction="in"/>
      <arg name="platform_data" type="a{sv}" direction="in"/>
    </method>
    <method name="ActivateAction">
      <arg name="action_name" type="s" direction="in"/>
      <arg name="parameter" type="av" direction="in"/>
      <arg name="platform_data" type="a{sv}" direction="in"/>
    </method>
  </interface>
</node>)xml";

constexpr const char* kToken = "activation-token";
constexpr const char* kStartupId = "desktop-startup-id";

// Out of a call's last argument, which may hold anything under these names.
std::string activationTokenIn(GVariant* arguments) {
  const VariantPtr data(g_variant_get_child_value(arguments, g_variant_n_children(arguments) - 1));
  for (const char* name : {kToken, kStartupId}) {
    const char* token = nullptr;
    if (g_variant_lookup(data.get(), name, "&s", &token)) return token;
  }
  return {};
}

GVariant* platformDataWith(const std::string& token) {
  if (token.empty()) return g_variant_new_parsed("(@a{sv} {},)");
  return g_variant_new_parsed("({%s: <%s>, %s: <%s>},)", kToken, token.c_str(), kStartupId,
                              token.c_str());
}

class BusInstance final : public Instance {
 public:
  BusInstance(ApplicationOptions options, MainActor& mainActor)
      : options_(std::move(options)),
        mainActor_(mainActor),
        connection_(gio::shared(options_.connection)),
        object_(connection_.get(), kPath, kDescription,
                {[this](const std::string& method, GVariant* arguments) {
                   return call(method, arguments);
                 },
                 nullptr}) {}
  BusInstance(const BusInstance&) = delete;
  BusInstance& operator=(const BusInstance&) = delete;
  ~BusInstance() override {
    g_dbus_connection_call(connection_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus",
                           "org.freedesktop.DBus", "ReleaseName", g_variant_new("(s)", kName),
                           nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr, nullptr);
  }

 private:
  // The board has no documents: being asked to open one is being started.
  [[nodiscard]] CallReply call(const std::string& method, GVariant* arguments) {
    const auto token = activationTokenIn(arguments);
    const bool isLaunch = std::exchange(options_.startedByBus, false);
    if (method != "ActivateAction") {
      return isLaunch ? VariantPtr() : later(options_.activate, token);
    }
    const char* name = nullptr;
    g_variant_get_child(arguments, 0, "&s", &name);
    const auto& actions = options_.actions;
    const auto found = std::find_if(actions.begin(), actions.end(),
                                    [&](const auto& action) { return action.name == name; });
    if (found == actions.end()) {
      return gio::invalidArguments(std::string("There is no action \"") + name + "\".");
    }
    return later(found->perform, token);
  }
  [[nodiscard]] CallReply later(std::function<void()> work, const std::string& token) const {
    mainActor_.post([this, alive = std::weak_ptr(alive_), work = std::move(work), token] {
      if (alive.expired() || !work) return;
      if (!token.empty() && options_.takeActivationToken) options_.takeActivationToken(token);
      work();
    });
    return VariantPtr();
  }

  ApplicationOptions options_;
  MainActor& mainActor_;
  const gio::ObjectPtr<GDBusConnection> connection_;
  const gio::ExportedObject object_;
  const std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

// Answers whether the name is ours now.
bool takeName(GDBusConnection* connection, std::string& failure) {
  constexpr guint32 kDoNotQueue = 4;
  constexpr guint32 kPrimaryOwner = 1;
  gio::Failure error;
  const VariantPtr reply(g_dbus_connection_call_sync(
      connection, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
      "RequestName", g_variant_new("(su)", kName, kDoNotQueue), G_VARIANT_TYPE("(u)"),
      G_DBUS_CALL_FLAGS_NONE, kBusLimit, nullptr, error.out()));
  if (!reply) {
    failure = error.message();
    return false;
  }
  guint32 outcome = 0;
  g_variant_get(reply.get(), "(u)", &outcome);
  return outcome == kPrimaryOwner;
}

// The running instance shows its settings, as if it had been chosen from the menu of programs. A
// call that it has not answered in time still reaches it.
void activateOther(GDBusConnection* connection, const std::string& activationToken) {
  gio::Failure error;
  const VariantPtr reply(g_dbus_connection_call_sync(
      connection, kName, kPath, "org.freedesktop.Application", "Activate",
      platformDataWith(activationToken), nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, kOtherLimit,
      nullptr, error.out()));
  if (error.is(G_IO_ERROR, G_IO_ERROR_TIMED_OUT)) {
    std::cerr << "orvane: Orvane runs already and is busy; its settings open when it is ready.\n";
  } else if (error) {
    std::cerr << "orvane: Orvane runs already, but did not answer: " << error.message() << '\n';
  }
}

}  // namespace

// The object is there before the name is, so that nobody who sees the name asks in vain.
InstanceClaim claimOnBus(ApplicationOptions options, MainActor& mainActor) {
  auto* const connection = options.connection;
  const bool isWanted = !options.startedWithSession;
  const std::string activationToken = options.activationToken;
  auto instance = std::make_unique<BusInstance>(std::move(options), mainActor);
  std::string failure;
  if (takeName(connection, failure)) return {InstanceOutcome::first, std::move(instance)};
  if (!failure.empty()) {
    std::cerr << "orvane: The session bus does not answer: " << failure << '\n';
    return {InstanceOutcome::first, std::move(instance)};
  }
  if (isWanted) activateOther(connection, activationToken);
  return {InstanceOutcome::forwarded, nullptr};
}

}  // namespace orvane::host::application
