#pragma once

#include <glib-object.h>

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "linux/gio/handles.h"

namespace orvane::host {

// Functions that hear an object's signals, and nothing of what those carry, for as long as this
// lives. They are called on the thread that the signal is sent on.
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

  void add(const char* signal, Heard heard) { connect(signal, {std::move(heard), std::nullopt}); }

  // Of a signal whose first argument is a text: only where it is this one.
  void addFor(const char* signal, std::string text, Heard heard) {
    connect(signal, {std::move(heard), std::move(text)});
  }

 private:
  struct Handler {
    Heard heard;
    std::optional<std::string> text;
  };

  void connect(const char* signal, Handler handler) {
    auto* const kept = new Handler(std::move(handler));
    auto* const closure = g_closure_new_simple(sizeof(GClosure), kept);
    g_closure_add_finalize_notifier(
        closure, kept, [](gpointer data, GClosure*) { delete static_cast<Handler*>(data); });
    g_closure_set_marshal(closure, &call);
    handlers_.push_back(g_signal_connect_closure(object_.get(), signal, closure, FALSE));
  }

  static void call(GClosure* closure, GValue*, guint count, const GValue* values, gpointer,
                   gpointer) {
    const auto& handler = *static_cast<Handler*>(closure->data);
    if (!handler.text || isFirst(*handler.text, count, values)) handler.heard();
  }

  // The first of the values is the object itself.
  static bool isFirst(const std::string& text, guint count, const GValue* values) {
    if (count < 2 || !G_VALUE_HOLDS_STRING(&values[1])) return false;
    const char* const first = g_value_get_string(&values[1]);
    return first != nullptr && text == first;
  }

  const gio::ObjectPtr<GObject> object_;
  std::vector<gulong> handlers_;
};

}  // namespace orvane::host
