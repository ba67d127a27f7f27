#include "linux/hotkey/readable_watch.h"

#include <glib-unix.h>

#include <utility>

namespace orvane::host::hotkey {

// A source that was removed within its own call is not asked again, whatever the call answers.
ReadableWatch::ReadableWatch(int descriptor, std::function<void()> readable)
    : readable_(std::move(readable)) {
  const GUnixFDSourceFunc onReadable = [](gint, GIOCondition, gpointer self) -> gboolean {
    const auto call = static_cast<ReadableWatch*>(self)->readable_;
    call();
    return G_SOURCE_CONTINUE;
  };
  constexpr auto conditions = static_cast<GIOCondition>(G_IO_IN | G_IO_HUP | G_IO_ERR);
  source_ = g_unix_fd_add(descriptor, conditions, onReadable, this);
}

ReadableWatch::~ReadableWatch() { g_source_remove(source_); }

}  // namespace orvane::host::hotkey
