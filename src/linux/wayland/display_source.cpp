#include "linux/wayland/display_source.h"

#include <glib.h>
#include <wayland-client.h>

#include <cerrno>
#include <utility>

namespace orvane::host::wayland {

// The four callbacks of a GSource around libwayland's rule for readers: announce the intention to
// read before sleeping, then either read or take it back.
class DisplaySource::Source {
 public:
  Source(wl_display* display, Events events) : display_(display), events_(std::move(events)) {
    static GSourceFuncs functions = {
        [](GSource* it, gint* timeout) { return of(it).prepare(timeout); },
        [](GSource* it) { return of(it).check(); },
        [](GSource* it, GSourceFunc, gpointer) { return of(it).dispatch(); },
        nullptr,
        nullptr,
        nullptr,
    };
    source_ = g_source_new(&functions, sizeof(Memory));
    memory(source_)->owner = this;
    g_source_set_name(source_, "Wayland display");
    fd_ = g_source_add_unix_fd(source_, wl_display_get_fd(display_), readable);
    g_source_set_can_recurse(source_, TRUE);  // nothing turns the loop in between, so no wake-ups
    g_source_attach(source_, nullptr);
  }
  ~Source() {
    stopReading();
    g_source_destroy(source_);
    g_source_unref(source_);
  }
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;

 private:
  struct Memory {
    GSource base;
    Source* owner;
  };
  static constexpr auto readable = static_cast<GIOCondition>(G_IO_IN | G_IO_ERR | G_IO_HUP);

  static Memory* memory(GSource* source) { return reinterpret_cast<Memory*>(source); }
  static Source& of(GSource* source) { return *memory(source)->owner; }

  gboolean prepare(gint* timeout) {
    *timeout = -1;
    flush();
    if (failed()) return TRUE;
    // A turn in which a source of higher priority was ready may have left us without check().
    if (reading_) return FALSE;
    if (wl_display_prepare_read(display_) != 0) return TRUE;
    reading_ = true;
    return FALSE;
  }

  gboolean check() {
    const auto seen = g_source_query_unix_fd(source_, fd_);
    if (!reading_) return failed() ? TRUE : FALSE;
    if ((seen & readable) == 0) {
      stopReading();
      return FALSE;
    }
    reading_ = false;
    wl_display_read_events(display_);  // a failure is kept in the display
    return TRUE;
  }

  gboolean dispatch() {
    if (!failed()) wl_display_dispatch_pending(display_);
    if (failed()) {
      stopReading();
      events_.lost();
      return G_SOURCE_REMOVE;
    }
    events_.dispatched();
    return G_SOURCE_CONTINUE;
  }

  void flush() {
    const bool full = wl_display_flush(display_) < 0 && errno == EAGAIN;
    // With a full socket the loop also wakes when there is room again. Asking for what is asked for
    // already would wake it at once, and so in every turn.
    if (full == std::exchange(waitsForRoom_, full)) return;
    g_source_modify_unix_fd(source_, fd_,
                            full ? static_cast<GIOCondition>(readable | G_IO_OUT) : readable);
  }

  void stopReading() {
    if (reading_) wl_display_cancel_read(display_);
    reading_ = false;
  }

  [[nodiscard]] bool failed() const { return wl_display_get_error(display_) != 0; }

  wl_display* display_;
  Events events_;
  GSource* source_ = nullptr;
  gpointer fd_ = nullptr;
  bool reading_ = false;
  bool waitsForRoom_ = false;
};

DisplaySource::DisplaySource(wl_display* display, Events events)
    : source_(std::make_unique<Source>(display, std::move(events))) {}
DisplaySource::~DisplaySource() = default;

}  // namespace orvane::host::wayland
