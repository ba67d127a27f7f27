#include "linux/x11/event_source.h"

#include <glib.h>

#include <algorithm>
#include <utility>

#include "linux/xcb/answers.h"

namespace orvane::host::x11 {

// What GLib allocates. It is plain memory to GLib, so the C++ members live behind pointers.
struct EventSource::Source {
  GSource base;
  Connection* connection;
  std::function<void()>* onLost;
  xcb_generic_event_t* pending;  // the next event, read but not delivered
  gpointer tag;
  gboolean awaitsRoom;  // for requests
  gint64 stalledSince;  // on GLib's clock, in microseconds; 0 while requests go out
};

namespace {

template <class S>
S* self(GSource* source) {
  return reinterpret_cast<S*>(source);
}

// Sends what was asked, unless that would wait for the server: then, as soon as it reads again.
template <class S>
void flush(S* my) {
  auto* connection = my->connection->handle();
  const bool stalls = !xcb::takesRequests(connection);
  if (!stalls) xcb_flush(connection);
  if (stalls != (my->stalledSince != 0)) my->stalledSince = stalls ? g_get_monotonic_time() : 0;
  const gboolean awaitsRoom = stalls || my->connection->isAwaited() ? TRUE : FALSE;
  if (awaitsRoom == my->awaitsRoom) return;
  my->awaitsRoom = awaitsRoom;
  g_source_modify_unix_fd(&my->base, my->tag,
                          static_cast<GIOCondition>(awaitsRoom ? G_IO_IN | G_IO_OUT : G_IO_IN));
}

// Whether somebody waits to send more, and can.
template <class S>
bool takesMore(const S* my) {
  return my->connection->isAwaited() && xcb::takesRequests(my->connection->handle());
}

// In milliseconds, until a server that reads nothing is given up; -1 while it reads.
template <class S>
gint patienceLeft(const S* my) {
  if (my->stalledSince == 0) return -1;
  const gint64 over = my->stalledSince + std::chrono::microseconds(xcb::serverPatience).count();
  return static_cast<gint>(std::max<gint64>(0, (over - g_get_monotonic_time()) / 1000));
}

template <class S>
gboolean prepare(GSource* source, gint* timeout) {
  auto* my = self<S>(source);
  auto* connection = my->connection->handle();
  // Flushing may read; so it comes before looking at what was read.
  flush(my);
  *timeout = patienceLeft(my);
  if (my->pending == nullptr) my->pending = xcb_poll_for_queued_event(connection);
  return my->pending != nullptr || takesMore(my) || my->connection->isLost();
}

template <class S>
gboolean check(GSource* source) {
  auto* my = self<S>(source);
  if (patienceLeft(my) == 0) xcb::endConnection(my->connection->handle());
  if (g_source_query_unix_fd(source, my->tag) != 0 && my->pending == nullptr) {
    my->pending = xcb_poll_for_event(my->connection->handle());
  }
  return my->pending != nullptr || takesMore(my) || my->connection->isLost();
}

template <class S>
gboolean dispatch(GSource* source, GSourceFunc, gpointer) {
  auto* my = self<S>(source);
  while (my->pending != nullptr) {
    const Reply<xcb_generic_event_t> event(std::exchange(my->pending, nullptr));
    my->connection->deliver(*event);
    if (g_source_is_destroyed(source)) return G_SOURCE_REMOVE;
    my->pending = xcb_poll_for_queued_event(my->connection->handle());
  }
  if (takesMore(my)) my->connection->goOn();
  if (g_source_is_destroyed(source)) return G_SOURCE_REMOVE;
  if (!my->connection->isLost()) return G_SOURCE_CONTINUE;
  // A copy, since what is called may destroy us.
  const auto onLost = *my->onLost;
  onLost();
  return G_SOURCE_REMOVE;
}

template <class S>
void finalize(GSource* source) {
  auto* my = self<S>(source);
  std::free(my->pending);
  delete my->onLost;
}

}  // namespace

EventSource::EventSource(Connection& connection, std::function<void()> onLost) {
  static GSourceFuncs functions = {prepare<Source>,  check<Source>, dispatch<Source>,
                                   finalize<Source>, nullptr,       nullptr};
  GSource* source = g_source_new(&functions, sizeof(Source));
  source_ = reinterpret_cast<Source*>(source);
  source_->connection = &connection;
  source_->awaitsRoom = FALSE;
  source_->stalledSince = 0;
  source_->onLost = new std::function<void()>(std::move(onLost));
  source_->tag =
      g_source_add_unix_fd(source, xcb_get_file_descriptor(connection.handle()), G_IO_IN);
  g_source_set_name(source, "X11 events");
  g_source_set_can_recurse(source, TRUE);  // nothing turns the loop in between, so no wake-ups
  g_source_attach(source, nullptr);
}

EventSource::~EventSource() {
  g_source_destroy(&source_->base);
  g_source_unref(&source_->base);
}

}  // namespace orvane::host::x11
