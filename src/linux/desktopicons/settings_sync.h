#pragma once

#include <gio/gio.h>

#include <functional>
#include <memory>

#include "linux/desktopicons/icon_backend.h"
#include "linux/gio/handles.h"

namespace orvane::host::desktopicons {

// GSettings answers with what was set at once, and hands it to its store by a thread of its own.
// This tells when it has arrived there, which a store that hangs may never let it. Main thread
// only.
class SettingsSync {
 public:
  SettingsSync() = default;
  SettingsSync(const SettingsSync&) = delete;
  SettingsSync& operator=(const SettingsSync&) = delete;
  ~SettingsSync();

  // `isTaken` is what setting the key answered. `told` is called once: at once where it was
  // refused, else in a later turn and within a second, with done or unknown. One at a time.
  void settle(bool isTaken, std::function<void(Outcome)> told);
  // Waits for what is on its way, a third of a second at most, and tells.
  void finish();

 private:
  class Arrival;

  static void arrived(GObject* none, GAsyncResult* result, gpointer self);
  void tell(Outcome outcome);

  std::function<void(Outcome)> told_;
  std::shared_ptr<Arrival> arrival_;  // with the thread that waits for it
  std::unique_ptr<gio::Cancellation> waiting_;
  guint limit_ = 0;
};

}  // namespace orvane::host::desktopicons
