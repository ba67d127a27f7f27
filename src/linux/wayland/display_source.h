#pragma once

#include <functional>
#include <memory>

struct wl_display;

namespace orvane::host::wayland {

// Reads a display's events within the default GLib main context and sends what is waiting to be
// sent whenever the loop goes to sleep.
class DisplaySource {
 public:
  struct Events {
    std::function<void()> dispatched;  // a batch of events was handled
    std::function<void()> lost;        // the connection failed; nothing is called any more
  };

  // The display outlives the source.
  DisplaySource(wl_display* display, Events events);
  ~DisplaySource();
  DisplaySource(const DisplaySource&) = delete;
  DisplaySource& operator=(const DisplaySource&) = delete;

  // Leaves what arrives unread, so that it wakes nobody, until listen() is called, the connection
  // ends, or a second and a half is over. What is to be sent is sent as ever.
  void rest();
  void listen();

 private:
  class Source;
  std::unique_ptr<Source> source_;
};

}  // namespace orvane::host::wayland
