#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "foundation/subject.h"
#include "linux/x11/atoms.h"
#include "linux/x11/protocol_error.h"
#include "linux/x11/xcb_types.h"
#include "view/pixel_grid.h"

namespace orvane::host::x11 {

// How pictures can be handed to the server without copying them through the connection.
enum class SharedMemory { none, segments, fileDescriptors };

// One connection to an X server, one of its screens, and what that screen can do. Requests are
// queued until flush(); nothing here waits for the server but open() and request-specific replies.
// Main thread only, but for open().
class Connection {
 public:
  struct Opened {
    std::unique_ptr<Connection> connection;  // null: it could not be had, and
    std::string reason;                      // this is why, as a sentence
  };
  // An empty name means the one in DISPLAY. May wait for ever for a server that lets us in and then
  // says nothing. On any thread; the connection belongs to whoever gets it.
  static Opened open(const std::string& displayName);

  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection();

  [[nodiscard]] xcb_connection_t* handle() const { return handle_; }
  [[nodiscard]] const xcb_screen_t& screen() const { return *screen_; }
  [[nodiscard]] xcb_window_t root() const { return screen_->root; }
  [[nodiscard]] PixelRect rootFrame() const { return rootFrame_; }
  [[nodiscard]] xcb_atom_t atom(Atom atom) const { return atoms_[atom]; }
  // Whether the resource was made by this client.
  [[nodiscard]] bool isOurs(std::uint32_t resource) const;
  // Nothing can be asked any more.
  [[nodiscard]] bool isLost() const { return xcb_connection_has_error(handle_) != 0; }

  // A visual with an alpha channel; 0 where the screen has none.
  [[nodiscard]] xcb_visualid_t translucentVisual() const { return translucentVisual_; }
  [[nodiscard]] SharedMemory sharedMemory() const { return sharedMemory_; }
  [[nodiscard]] bool hasMonitors() const { return hasMonitors_; }  // RandR 1.5
  // The type of the first event of an extension.
  [[nodiscard]] int randrEvents() const { return randrEvents_; }  // -1: has no RandR
  [[nodiscard]] int xfixesEvents() const { return xfixesEvents_; }

  // Everything that arrives, errors left out, in the order of its arrival.
  [[nodiscard]] Subject<xcb_generic_event_t>& events() { return events_; }
  // Tells the observers, or for an error says once per cause on standard error what was refused.
  void deliver(const xcb_generic_event_t& event);
  void flush() const { xcb_flush(handle_); }

  // For one who has more to send than goes out without waiting for the server: takesMore() is sent
  // once, as soon as more goes out.
  void tellWhenItTakesMore() { isAwaited_ = true; }
  [[nodiscard]] bool isAwaited() const { return isAwaited_; }
  [[nodiscard]] Subject<>& takesMore() { return takesMore_; }
  void goOn();

 private:
  explicit Connection(xcb_connection_t* handle) : handle_(handle) {}
  // Each answers a sentence, or nothing when all is well.
  std::string learnScreen(int number);
  std::string learnExtensions();
  void learnSharedMemory();
  [[nodiscard]] std::vector<Extension> extensions() const;
  void report(const xcb_generic_error_t& error);

  xcb_connection_t* handle_;
  xcb_screen_t* screen_ = nullptr;
  PixelRect rootFrame_;
  Atoms atoms_;
  xcb_visualid_t translucentVisual_ = 0;
  SharedMemory sharedMemory_ = SharedMemory::none;
  bool hasMonitors_ = false;
  int randrEvents_ = -1;
  int xfixesEvents_ = 0;
  Subject<xcb_generic_event_t> events_;
  Subject<> takesMore_;
  bool isAwaited_ = false;
  std::set<std::string> reported_;
};

}  // namespace orvane::host::x11
