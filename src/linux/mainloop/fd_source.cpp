#include "linux/mainloop/fd_source.h"

#include <glib-unix.h>

#include <utility>

namespace orvane::host {
namespace {

using Callback = std::function<void()>;

// GLib keeps the closure alive until the dispatch has returned, also when the source is removed
// inside it.
gboolean dispatch(gint, GIOCondition, gpointer closure) {
  (*static_cast<Callback*>(closure))();
  return G_SOURCE_CONTINUE;
}

void destroyClosure(gpointer closure) { delete static_cast<Callback*>(closure); }

}  // namespace

FdSource::FdSource(int descriptor, SourcePriority priority, std::function<void()> readable) {
  GSource* source = g_unix_fd_source_new(descriptor, G_IO_IN);
  g_source_set_priority(source,
                        priority == SourcePriority::urgent ? G_PRIORITY_HIGH : G_PRIORITY_DEFAULT);
  g_source_set_callback(source, G_SOURCE_FUNC(dispatch), new Callback(std::move(readable)),
                        destroyClosure);
  // Nothing turns the loop from within a callback. Told so, GLib need not take the descriptor out
  // of the loop for the time of the callback, at the price of two wake-ups and an idle turn.
  g_source_set_can_recurse(source, TRUE);
  id_ = g_source_attach(source, nullptr);
  g_source_unref(source);
}

FdSource::~FdSource() { g_source_remove(id_); }

}  // namespace orvane::host
