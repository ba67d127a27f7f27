#include "linux/gio/call.h"

#include <utility>

#include "linux/gio/subscription.h"

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

SignalWatch::SignalWatch(GDBusConnection* connection, const Method& signal, Heard heard)
    : connection_(shared(connection)), heard_(std::move(heard)) {
  const GDBusSignalCallback onSignal = [](GDBusConnection*, const char*, const char*, const char*,
                                          const char*, GVariant* arguments, gpointer self) {
    const auto call = static_cast<SignalWatch*>(self)->heard_;
    if (call) call(arguments);
  };
  subscription_ = subscribe(connection, signal, nullptr, G_DBUS_SIGNAL_FLAGS_NONE, onSignal, this);
}

SignalWatch::~SignalWatch() { unsubscribe(connection_.get(), subscription_); }

}  // namespace orvane::host::gio
