#include "linux/gio/session_bus.h"

#include <filesystem>
#include <utility>

namespace orvane::host::gio {
namespace {

namespace fs = std::filesystem;

struct ReleaseContext {
  void operator()(GMainContext* context) const { g_main_context_unref(context); }
};
struct ReleaseSource {
  void operator()(GSource* source) const {
    g_source_destroy(source);
    g_source_unref(source);
  }
};

// Collects the outcome of connecting.
struct Attempt {
  ObjectPtr<GDBusConnection> connection;
  bool done = false;
  bool late = false;

  static void finish(GObject*, GAsyncResult* result, gpointer attempt) {
    auto& self = *static_cast<Attempt*>(attempt);
    self.connection.reset(g_dbus_connection_new_for_address_finish(result, nullptr));
    self.done = true;
  }
  static gboolean expire(gpointer attempt) {
    static_cast<Attempt*>(attempt)->late = true;
    return G_SOURCE_REMOVE;
  }
};

}  // namespace

std::string sessionBusAddress(const Environment& environment) {
  if (auto address = environment("DBUS_SESSION_BUS_ADDRESS")) return *address;
  const auto runtime = absolutePath(environment, "XDG_RUNTIME_DIR");
  if (!runtime) return {};
  const fs::path socket = *runtime / "bus";
  std::error_code unknown;
  if (!fs::is_socket(socket, unknown)) return {};
  const TextPtr escaped(g_dbus_address_escape_value(socket.c_str()));
  return std::string("unix:path=") + escaped.get();
}

// The waiting happens on a context of its own, so that no other part of the program gets a turn.
ObjectPtr<GDBusConnection> connectToBus(const std::string& address,
                                        std::chrono::milliseconds limit) {
  if (address.empty()) return nullptr;
  const std::unique_ptr<GMainContext, ReleaseContext> context(g_main_context_new());
  g_main_context_push_thread_default(context.get());
  Attempt attempt;
  const Cancellation cancellation;
  constexpr auto asClient =
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
  g_dbus_connection_new_for_address(address.c_str(), asClient, nullptr, cancellation.get(),
                                    &Attempt::finish, &attempt);
  const std::unique_ptr<GSource, ReleaseSource> timer(
      g_timeout_source_new(static_cast<guint>(limit.count())));
  g_source_set_callback(timer.get(), &Attempt::expire, &attempt, nullptr);
  g_source_attach(timer.get(), context.get());
  while (!attempt.done && !attempt.late) g_main_context_iteration(context.get(), TRUE);
  if (!attempt.done) {
    g_cancellable_cancel(cancellation.get());
    while (!attempt.done) g_main_context_iteration(context.get(), TRUE);
  }
  g_main_context_pop_thread_default(context.get());
  return attempt.late ? nullptr : std::move(attempt.connection);
}

}  // namespace orvane::host::gio
