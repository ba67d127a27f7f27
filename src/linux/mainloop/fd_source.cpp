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

FdSource::FdSource(int descriptor, SourcePriority priority, std::function<void()> readable)
    : id_(g_unix_fd_add_full(
          priority == SourcePriority::urgent ? G_PRIORITY_HIGH : G_PRIORITY_DEFAULT, descriptor,
          G_IO_IN, dispatch, new Callback(std::move(readable)), destroyClosure)) {}

FdSource::~FdSource() { g_source_remove(id_); }

}  // namespace orvane::host
