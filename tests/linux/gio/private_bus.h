#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "linux/gio/handles.h"
#include "linux/gio/session_bus.h"
#include "support/scratch_folder.h"

namespace orvane::host::gio {

// Lets the default main context go on until the condition holds; false when it took too long.
inline bool eventually(const std::function<bool()>& condition) {
  const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  const guint beat = g_timeout_add(
      20, [](gpointer) { return gboolean{G_SOURCE_CONTINUE}; }, nullptr);
  bool holds = condition();
  while (!holds && std::chrono::steady_clock::now() < limit) {
    g_main_context_iteration(nullptr, TRUE);
    holds = condition();
  }
  g_source_remove(beat);
  return holds;
}

// A session bus that nobody else is on, stopped with this object. What this process starts
// meanwhile finds it in its environment.
class PrivateBus {
 public:
  PrivateBus() {
    std::filesystem::create_directory(folder_ / "services");
    const auto configuration = folder_.write(
        "bus.conf",
        "<busconfig><type>session</type><listen>" + address() + "</listen><servicedir>" +
            (folder_ / "services").string() +
            "</servicedir><policy context=\"default\"><allow own=\"*\"/><allow eavesdrop=\"true\"/>"
            "<allow send_destination=\"*\" eavesdrop=\"true\"/></policy></busconfig>");
    const auto option = "--config-file=" + configuration.string();
    Failure failure;
    daemon_.reset(g_subprocess_new(G_SUBPROCESS_FLAGS_STDERR_SILENCE, failure.out(), "dbus-daemon",
                                   "--nofork", option.c_str(), nullptr));
    EXPECT_TRUE(daemon_) << failure.message();
    // Its socket has a name a moment before somebody listens at it.
    EXPECT_TRUE(eventually([&] { return connect() != nullptr; }));
    g_test_dbus_unset();
    g_setenv("DBUS_SESSION_BUS_ADDRESS", address().c_str(), TRUE);
  }
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;
  ~PrivateBus() { stop(); }

  void stop() {
    if (!daemon_) return;
    g_subprocess_force_exit(daemon_.get());
    g_subprocess_wait(daemon_.get(), nullptr, nullptr);
    daemon_.reset();
  }
  [[nodiscard]] std::string address() const { return "unix:path=" + (folder_ / "bus").string(); }
  [[nodiscard]] ObjectPtr<GDBusConnection> connect() const {
    return connectToBus(address(), std::chrono::seconds(20));
  }

  // Of a service that the bus can start, or so it believes.
  void install(const std::string& name) const {
    folder_.write(fileOf(name), "[D-BUS Service]\nName=" + name + "\nExec=/bin/false\n");
  }
  void remove(const std::string& name) const { std::filesystem::remove(folder_ / fileOf(name)); }

 private:
  static std::string fileOf(const std::string& name) { return "services/" + name + ".service"; }

  const ScratchFolder folder_;
  ObjectPtr<GSubprocess> daemon_;
};

// What a method of somebody on the bus answers. Both ends may live in this process.
struct Answer {
  VariantPtr value;   // null after an error
  std::string error;  // its bus name
  bool arrived = false;

  // The answer as text, or the error's name.
  [[nodiscard]] std::string text() const {
    if (!value) return error;
    const TextPtr printed(g_variant_print(value.get(), FALSE));
    return printed.get();
  }
};

// `arguments` is a tuple in the text form of variants, such as "(0, 'clicked')"; empty: none.
inline Answer ask(GDBusConnection* connection, const std::string& name, const std::string& path,
                  const std::string& interface, const std::string& method,
                  const std::string& arguments = "") {
  Answer answer;
  auto* parsed = arguments.empty()
                     ? nullptr
                     : g_variant_parse(nullptr, arguments.c_str(), nullptr, nullptr, nullptr);
  const GAsyncReadyCallback finish = [](GObject* source, GAsyncResult* result, gpointer data) {
    auto& self = *static_cast<Answer*>(data);
    GError* failure = nullptr;
    self.value.reset(g_dbus_connection_call_finish(reinterpret_cast<GDBusConnection*>(source),
                                                   result, &failure));
    if (failure) {
      const TextPtr remote(g_dbus_error_get_remote_error(failure));
      self.error = remote ? remote.get() : failure->message;
      g_error_free(failure);
    }
    self.arrived = true;
  };
  g_dbus_connection_call(connection, name.c_str(), path.c_str(), interface.c_str(), method.c_str(),
                         parsed, nullptr, G_DBUS_CALL_FLAGS_NONE, 10'000, nullptr, finish, &answer);
  EXPECT_TRUE(eventually([&] { return answer.arrived; })) << method;
  return answer;
}

// What the bus itself answers.
inline Answer askBus(GDBusConnection* connection, const std::string& method,
                     const std::string& arguments = "") {
  return ask(connection, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
             method, arguments);
}

// A property of an object on the bus, as text, or the error's name.
inline std::string property(GDBusConnection* connection, const std::string& name,
                            const std::string& path, const std::string& interface,
                            const std::string& property) {
  const auto answer = ask(connection, name, path, "org.freedesktop.DBus.Properties", "Get",
                          "('" + interface + "', '" + property + "')");
  if (!answer.value) return answer.error;
  const VariantPtr boxed(g_variant_get_child_value(answer.value.get(), 0));
  const VariantPtr value(g_variant_get_variant(boxed.get()));
  const TextPtr printed(g_variant_print(value.get(), FALSE));
  return printed.get();
}

}  // namespace orvane::host::gio
