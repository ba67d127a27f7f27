#include "linux/wayland/first_contact.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>

#include "linux/wayland/handles.h"

namespace orvane::host::wayland {
namespace {

constexpr const char* kHungUp = "The Wayland compositor hung up.";
constexpr const char* kSilent = "The Wayland compositor does not answer.";
// How often it is asked whether the wait is in vain, in milliseconds.
constexpr int kBetweenQuestions = 500;

// As wayland's own rule has it: relative to the runtime folder. Empty where there is none.
std::string socketPath() {
  const char* display = std::getenv("WAYLAND_DISPLAY");
  std::string name = display ? display : "wayland-0";
  if (name.starts_with('/')) return name;
  const char* folder = std::getenv("XDG_RUNTIME_DIR");
  return folder && *folder == '/' ? std::string(folder) + "/" + name : std::string();
}

int connectTo(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.empty() || path.size() >= sizeof address.sun_path) {
    errno = path.empty() ? ENOENT : ENAMETOOLONG;
    return -1;
  }
  std::copy(path.begin(), path.end(), address.sun_path);
  const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (fd < 0) return -1;
  if (connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return fd;
  const int error = errno;
  close(fd);
  errno = error;
  return -1;
}

int millisecondsUntil(Deadline deadline) {
  using std::chrono::milliseconds;
  const auto left =
      std::chrono::ceil<milliseconds>(deadline - std::chrono::steady_clock::now()).count();
  return static_cast<int>(std::clamp<long long>(left, 0, 3'600'000));
}

bool isOver(const Wait& wait) {
  return millisecondsUntil(wait.deadline) == 0 || (wait.isInVain && wait.isInVain());
}

// Reads what comes next; nothing when something came, or may still come.
std::string readMore(wl_display* display, const Wait& wait) {
  const bool isFull = wl_display_flush(display) < 0 && errno == EAGAIN;
  pollfd waited{wl_display_get_fd(display), static_cast<short>(isFull ? POLLIN | POLLOUT : POLLIN),
                0};
  const int ready = poll(&waited, 1, std::min(millisecondsUntil(wait.deadline), kBetweenQuestions));
  if (ready > 0 && (waited.revents & ~POLLOUT) != 0) {
    return wl_display_read_events(display) < 0 ? kHungUp : "";
  }
  wl_display_cancel_read(display);
  return ready > 0 || (ready == 0 && !isOver(wait)) ? "" : kSilent;
}

}  // namespace

wl_display* connectToCompositor() {
  // A connection that was handed to us is open already.
  if (std::getenv("WAYLAND_SOCKET")) return wl_display_connect(nullptr);
  const int fd = connectTo(socketPath());
  return fd < 0 ? nullptr : wl_display_connect_to_fd(fd);
}

std::string waitForAnswers(wl_display* display, const Wait& wait) {
  static const wl_callback_listener listener = {
      [](void* it, wl_callback*, std::uint32_t) { *static_cast<bool*>(it) = true; }};
  bool answered = false;
  const Handle<wl_callback> last(wl_display_sync(display));
  wl_callback_add_listener(last.get(), &listener, &answered);
  while (!answered) {
    if (wl_display_prepare_read(display) == 0) {
      if (auto reason = readMore(display, wait); !reason.empty()) return reason;
    }
    if (wl_display_dispatch_pending(display) < 0) return kHungUp;
  }
  return {};
}

}  // namespace orvane::host::wayland
