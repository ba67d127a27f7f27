#include "linux/session/login_session.h"

#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include "linux/gio/call.h"
#include "linux/gio/name_watch.h"

namespace orvane::host {
namespace {

constexpr const char* logind = "org.freedesktop.login1";
constexpr const char* sessionInterface = "org.freedesktop.login1.Session";
constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";
// A bus that accepts and then says nothing would keep a thread.
constexpr std::chrono::seconds connectLimit{10};
constexpr std::chrono::seconds callLimit{20};

// What logind tells of a session.
struct SessionState {
  bool isActive = true;
  bool isLocked = false;
  std::string type;
  std::string display;
};

SessionState stateOf(GVariant* properties) {
  gboolean isActive = TRUE;
  gboolean isLocked = FALSE;
  const char* type = "";
  const char* display = "";
  g_variant_lookup(properties, "Active", "b", &isActive);
  g_variant_lookup(properties, "LockedHint", "b", &isLocked);
  g_variant_lookup(properties, "Type", "&s", &type);
  g_variant_lookup(properties, "Display", "&s", &display);
  return {isActive != FALSE, isLocked != FALSE, type, display};
}

// ":0.0" names a screen of the display ":0".
std::string withoutScreen(const std::string& display) {
  const auto colon = display.rfind(':');
  return colon == std::string::npos ? display : display.substr(0, display.find('.', colon));
}

class LoginSession final : public SessionSight {
 public:
  LoginSession(LoginSessionOptions options, MainActor& mainActor)
      : options_(std::move(options)), mainActor_(mainActor) {}

  void follow() override {
    if (isFollowed_ || options_.systemBus.empty()) return;
    isFollowed_ = true;
    timer_ = mainActor_.after(options_.delay, [this] { connect(); });
  }
  [[nodiscard]] bool isHidden() const override { return isHidden_; }
  [[nodiscard]] Subject<>& changed() override { return changed_; }

 private:
  void connect() {
    connecting_.emplace();
    timer_ = mainActor_.after(connectLimit, [this] { connecting_.reset(); });
    constexpr auto asClient =
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    g_dbus_connection_new_for_address(options_.systemBus.c_str(), asClient, nullptr,
                                      connecting_->get(), &connected, this);
  }

  // Once cancelled it must touch nothing of the owner, which may be gone.
  static void connected(GObject*, GAsyncResult* result, gpointer self) {
    gio::Failure failure;
    gio::ObjectPtr<GDBusConnection> connection(
        g_dbus_connection_new_for_address_finish(result, failure.out()));
    if (failure.is(G_IO_ERROR, G_IO_ERROR_CANCELLED)) return;
    static_cast<LoginSession*>(self)->listen(std::move(connection));
  }

  void listen(gio::ObjectPtr<GDBusConnection> connection) {
    timer_ = {};
    if (!connection) return;
    connection_ = std::move(connection);
    watch_.emplace(
        connection_.get(), logind, [this](const std::string&) { find(); }, [this] { forget(); });
  }

  void forget() {
    calls_.reset();
    changes_.reset();
    become(false);
  }

  // Whoever is logind now may know other sessions than the one before.
  void find() {
    forget();
    candidate_ = 0;
    tryNext();
  }

  // A session's id may have been inherited from one that is over, or from the service that runs
  // programs for a user; such a service, in turn, is no part of the session it works for.
  void tryNext() {
    changes_.reset();
    calls_.emplace();  // Answers that are still to come are about the one before.
    switch (candidate_++) {
      case 0:
        if (options_.sessionId.empty()) return tryNext();
        return ask(methodOfManager("GetSession"), g_variant_new("(s)", options_.sessionId.c_str()),
                   &pathInAnswer);
      case 1:
        // Zero is whoever asks: a process in a sandbox does not know its number outside.
        return ask(methodOfManager("GetSessionByPID"), g_variant_new("(u)", 0U), &pathInAnswer);
      case 2:
        return ask({logind, "/org/freedesktop/login1/user/self", propertiesInterface, "Get"},
                   g_variant_new("(ss)", "org.freedesktop.login1.User", "Display"),
                   &pathInProperty);
      default:
        return;
    }
  }

  static gio::Method methodOfManager(const char* name) {
    return {logind, "/org/freedesktop/login1", "org.freedesktop.login1.Manager", name};
  }

  using PathIn = std::string (*)(GVariant* results);

  static std::string pathInAnswer(GVariant* results) {
    const char* path = "";
    if (g_variant_is_of_type(results, G_VARIANT_TYPE("(o)"))) g_variant_get(results, "(&o)", &path);
    return path;
  }

  // The property is a pair of id and path.
  static std::string pathInProperty(GVariant* results) {
    if (!g_variant_is_of_type(results, G_VARIANT_TYPE("(v)"))) return {};
    const gio::VariantPtr boxed(g_variant_get_child_value(results, 0));
    const gio::VariantPtr pair(g_variant_get_variant(boxed.get()));
    const char* path = "";
    if (g_variant_is_of_type(pair.get(), G_VARIANT_TYPE("(so)"))) {
      g_variant_get(pair.get(), "(&s&o)", nullptr, &path);
    }
    return path;
  }

  void ask(const gio::Method& method, GVariant* arguments, PathIn pathIn) {
    gio::call(connection_.get(), method, arguments, callLimit, *calls_,
              [this, pathIn](GVariant* results, const gio::Failure& failure) {
                const auto path = failure ? std::string() : pathIn(results);
                // "/" is the user's session where there is none.
                if (path.size() < 2) return tryNext();
                consider(path);
              });
  }

  // Listens first, so that no change falls between the two.
  void consider(const std::string& path) {
    changes_.emplace(connection_.get(),
                     gio::Method{logind, path, propertiesInterface, "PropertiesChanged"},
                     [this, path](GVariant*) { read(path); });
    read(path);
  }

  void read(const std::string& path) {
    gio::call(connection_.get(), {logind, path, propertiesInterface, "GetAll"},
              g_variant_new("(s)", sessionInterface), callLimit, *calls_,
              [this](GVariant* results, const gio::Failure& failure) {
                const auto state = failure ? std::nullopt : stateIn(results);
                if (!state || !isOurs(*state)) return notOurs();
                become(!state->isActive || state->isLocked);
              });
  }

  static std::optional<SessionState> stateIn(GVariant* results) {
    if (!g_variant_is_of_type(results, G_VARIANT_TYPE("(a{sv})"))) return std::nullopt;
    const gio::VariantPtr properties(g_variant_get_child_value(results, 0));
    return stateOf(properties.get());
  }

  // A text console's session says nothing of an X server that was started from it, which may be on
  // a console of its own. Beside the session's display there may be others, as over the network.
  [[nodiscard]] bool isOurs(const SessionState& state) const {
    if (state.type == "wayland") return options_.isOnWayland;
    return state.type == "x11" && (state.display.empty() || withoutScreen(state.display) ==
                                                                withoutScreen(options_.x11Display));
  }

  void notOurs() {
    become(false);
    tryNext();
  }

  void become(bool isHidden) {
    if (isHidden == isHidden_) return;
    isHidden_ = isHidden;
    changed_.send();
  }

  const LoginSessionOptions options_;
  MainActor& mainActor_;
  bool isFollowed_ = false;
  bool isHidden_ = false;
  int candidate_ = 0;
  Subject<> changed_;
  Subscription timer_;
  std::optional<gio::Cancellation> connecting_;
  gio::ObjectPtr<GDBusConnection> connection_;
  std::optional<gio::Cancellation> calls_;
  std::optional<gio::SignalWatch> changes_;
  std::optional<gio::NameWatch> watch_;
};

std::string systemBusAddress(const Environment& environment) {
  if (auto address = environment("DBUS_SYSTEM_BUS_ADDRESS")) return *address;
  constexpr const char* socket = "/var/run/dbus/system_bus_socket";
  std::error_code unknown;
  if (!std::filesystem::is_socket(socket, unknown)) return {};
  return std::string("unix:path=") + socket;
}

}  // namespace

LoginSessionOptions loginSessionOptions(const Environment& environment) {
  LoginSessionOptions options;
  options.systemBus = systemBusAddress(environment);
  options.sessionId = environment("XDG_SESSION_ID").value_or("");
  options.x11Display = environment("DISPLAY").value_or("");
  options.isOnWayland = !environment("WAYLAND_DISPLAY").value_or("").empty();
  return options;
}

std::unique_ptr<SessionSight> makeLoginSession(LoginSessionOptions options, MainActor& mainActor) {
  return std::make_unique<LoginSession>(std::move(options), mainActor);
}

}  // namespace orvane::host
