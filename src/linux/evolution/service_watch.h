#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "linux/gio/call.h"
#include "linux/gio/handles.h"

namespace orvane::host {

// Whether the service of the desktop's accounts runs or can be started by the bus. Main thread.
class ServiceWatch {
 public:
  // `told` is called in later turns: once it is known, and whenever it changes. Without a bus there
  // is no service. A service that the bus can start stays there when it ends: `ownerChanged` tells
  // of each of its programs that begins to run, or has ended.
  ServiceWatch(GDBusConnection* bus, std::function<void(bool isThere)> told,
               std::function<void(bool runs)> ownerChanged = nullptr);
  ServiceWatch(const ServiceWatch&) = delete;
  ServiceWatch& operator=(const ServiceWatch&) = delete;
  ~ServiceWatch();

 private:
  static void onSign(GDBusConnection*, const char*, const char*, const char*, const char*,
                     GVariant* signal, gpointer self);
  void noteOwner(GVariant* signal);
  void ask();
  void askFor(const char* list);
  void note(GVariant* results);
  void conclude();

  const gio::ObjectPtr<GDBusConnection> bus_;
  const std::function<void(bool)> told_;
  const std::function<void(bool)> ownerChanged_;
  std::optional<bool> known_;
  int unanswered_ = 0;
  bool hasRegistry_ = false;
  bool hasCalendars_ = false;
  bool isAskedAgain_ = false;
  guint ownerSigns_ = 0;
  guint activatableSigns_ = 0;
  gio::Cancellation cancellation_;
};

}  // namespace orvane::host
