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
    poll_.fd = wl_display_get_fd(display_);
    g_source_add_poll(source_, &poll_);
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

  void rest() { restsUntil_ = g_get_monotonic_time() + longestRest; }
  void listen() { restsUntil_ = 0; }

 private:
  struct Memory {
    GSource base;
    Source* owner;
  };
  static constexpr gint64 longestRest = 1'500'000;  // microseconds
  static constexpr gushort broken = G_IO_ERR | G_IO_HUP;
  static constexpr gushort readable = G_IO_IN | broken;

  static Memory* memory(GSource* source) { return reinterpret_cast<Memory*>(source); }
  static Source& of(GSource* source) { return *memory(source)->owner; }

  gboolean prepare(gint* timeout) {
    *timeout = -1;
    flush();
    if (failed()) return TRUE;
    // Whoever meant to end the rest may have ended.
    if (isResting()) {
      const gint64 left = restsUntil_ - g_source_get_time(source_);
      *timeout = static_cast<gint>(left / 1000 + 1);
      stopReading();
    }
    poll_.events = isResting() ? broken : readable;
    // With a full socket the loop also wakes when there is room again.
    if (isFull_) poll_.events |= G_IO_OUT;
    // A turn in which a source of higher priority was ready may have left us without check().
    if (isResting() || reading_) return FALSE;
    if (wl_display_prepare_read(display_) != 0) return TRUE;
    reading_ = true;
    return FALSE;
  }

  gboolean check() {
    if ((poll_.revents & broken) != 0) listen();
    if (!reading_) return failed() ? TRUE : FALSE;
    if ((poll_.revents & readable) == 0) {
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

  void flush() { isFull_ = wl_display_flush(display_) < 0 && errno == EAGAIN; }

  void stopReading() {
    if (reading_) wl_display_cancel_read(display_);
    reading_ = false;
  }

  [[nodiscard]] bool isResting() const { return g_source_get_time(source_) < restsUntil_; }
  [[nodiscard]] bool failed() const { return wl_display_get_error(display_) != 0; }

  wl_display* display_;
  Events events_;
  GSource* source_ = nullptr;
  // The loop looks at it anew in every turn, so that changing it wakes nobody.
  GPollFD poll_{};
  bool reading_ = false;
  bool isFull_ = false;
  gint64 restsUntil_ = 0;  // in microseconds of GLib's monotonic time
};

DisplaySource::DisplaySource(wl_display* display, Events events)
    : source_(std::make_unique<Source>(display, std::move(events))) {}
DisplaySource::~DisplaySource() = default;

void DisplaySource::rest() { source_->rest(); }
void DisplaySource::listen() { source_->listen(); }

}  // namespace orvane::host::wayland
