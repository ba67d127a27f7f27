#include "linux/gio/call.h"

#include <utility>

namespace orvane::host::gio {
namespace {

void finish(GObject* connection, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<Answered> answered(static_cast<Answered*>(data));
  Failure failure;
  const VariantPtr results(g_dbus_connection_call_finish(
      reinterpret_cast<GDBusConnection*>(connection), result, failure.out()));
  if (*answered && !failure.is(G_IO_ERROR, G_IO_ERROR_CANCELLED)) {
    (*answered)(results.get(), failure);
  }
}

void callWith(GDBusCallFlags flags, GDBusConnection* connection, const Method& method,
              GVariant* arguments, std::chrono::milliseconds limit,
              const Cancellation& cancellation, Answered answered) {
  g_dbus_connection_call(connection, method.destination.c_str(), method.path.c_str(),
                         method.interface.c_str(), method.name.c_str(), arguments, nullptr, flags,
                         static_cast<int>(limit.count()), cancellation.get(), &finish,
                         new Answered(std::move(answered)));
}

}  // namespace

void call(GDBusConnection* connection, const Method& method, GVariant* arguments,
          std::chrono::milliseconds limit, const Cancellation& cancellation, Answered answered) {
  callWith(G_DBUS_CALL_FLAGS_NO_AUTO_START, connection, method, arguments, limit, cancellation,
           std::move(answered));
}

void callStarting(GDBusConnection* connection, const Method& method, GVariant* arguments,
                  std::chrono::milliseconds limit, const Cancellation& cancellation,
                  Answered answered) {
  callWith(G_DBUS_CALL_FLAGS_NONE, connection, method, arguments, limit, cancellation,
           std::move(answered));
}

// What the library had queued when the watch ended still arrives; it finds nobody.
SignalWatch::SignalWatch(GDBusConnection* connection, const Method& signal, Heard heard)
    : connection_(shared(connection)), heard_(std::make_shared<Heard>(std::move(heard))) {
  using Shared = std::shared_ptr<Heard>;
  const GDBusSignalCallback onSignal = [](GDBusConnection*, const char*, const char*, const char*,
                                          const char*, GVariant* arguments, gpointer data) {
    const Shared kept = *static_cast<Shared*>(data);
    if (const auto call = *kept) call(arguments);
  };
  const GDestroyNotify drop = [](gpointer data) { delete static_cast<Shared*>(data); };
  subscription_ = g_dbus_connection_signal_subscribe(
      connection, signal.destination.c_str(), signal.interface.c_str(), signal.name.c_str(),
      signal.path.c_str(), nullptr, G_DBUS_SIGNAL_FLAGS_NONE, onSignal, new Shared(heard_), drop);
}

SignalWatch::~SignalWatch() {
  *heard_ = nullptr;
  g_dbus_connection_signal_unsubscribe(connection_.get(), subscription_);
}

}  // namespace orvane::host::gio
