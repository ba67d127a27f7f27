#pragma once

#include <glib-object.h>

#include <functional>
#include <utility>
#include <vector>

#include "linux/gio/handles.h"

namespace orvane::host {

// Functions that hear an object's signals, whatever the signals carry, for as long as this lives.
// They are called on the thread that the signal is sent on.
class SignalHandlers {
 public:
  using Heard = std::function<void()>;

  // The object's owner is this too.
  explicit SignalHandlers(void* object) : object_(gio::shared(static_cast<GObject*>(object))) {}
  SignalHandlers(const SignalHandlers&) = delete;
  SignalHandlers& operator=(const SignalHandlers&) = delete;
  ~SignalHandlers() {
    for (const auto handler : handlers_) g_signal_handler_disconnect(object_.get(), handler);
  }

  void add(const char* signal, Heard heard) {
    auto* const function = new Heard(std::move(heard));
    auto* const closure = g_closure_new_simple(sizeof(GClosure), function);
    g_closure_add_finalize_notifier(
        closure, function, [](gpointer data, GClosure*) { delete static_cast<Heard*>(data); });
    g_closure_set_marshal(closure, &call);
    handlers_.push_back(g_signal_connect_closure(object_.get(), signal, closure, FALSE));
  }

 private:
  static void call(GClosure* closure, GValue*, guint, const GValue*, gpointer, gpointer) {
    (*static_cast<Heard*>(closure->data))();
  }

  const gio::ObjectPtr<GObject> object_;
  std::vector<gulong> handlers_;
};

}  // namespace orvane::host
