#include "linux/xcb/answers.h"

#include <poll.h>
#include <sys/socket.h>
#include <xcb/xcbext.h>

#include <algorithm>
#include <cerrno>

namespace orvane::host::xcb {

namespace {

using Clock = std::chrono::steady_clock;

// Whether the descriptor became ready, or broke, in time.
bool becomesReady(xcb_connection_t* connection, short events, Clock::time_point deadline) {
  using std::chrono::milliseconds;
  pollfd waited{xcb_get_file_descriptor(connection), events, 0};
  for (;;) {
    const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
    const int ready = poll(&waited, 1, static_cast<int>(std::max<long long>(left.count(), 0)));
    if (ready > 0) return true;
    if (ready == 0 || errno != EINTR) return false;
  }
}

}  // namespace

void* awaitAnswer(xcb_connection_t* connection, unsigned int sequence) {
  const auto deadline = Clock::now() + serverPatience;
  if (xcb_connection_has_error(connection) != 0) return nullptr;
  if (becomesReady(connection, POLLOUT, deadline)) xcb_flush(connection);
  for (;;) {
    void* reply = nullptr;
    xcb_generic_error_t* error = nullptr;
    if (xcb_poll_for_reply(connection, sequence, &reply, &error) != 0) {
      std::free(error);
      return reply;
    }
    if (!becomesReady(connection, POLLIN, deadline)) endConnection(connection);
  }
}

// Requests are answered in their order.
bool settle(xcb_connection_t* connection) {
  return answerTo<xcb_get_input_focus_reply_t>(connection, xcb_get_input_focus(connection)) !=
         nullptr;
}

bool wasServed(xcb_connection_t* connection, xcb_void_cookie_t asked) {
  if (!settle(connection)) return false;
  const Reply<xcb_generic_error_t> error(xcb_request_check(connection, asked));
  return !error && xcb_connection_has_error(connection) == 0;
}

bool takesRequests(xcb_connection_t* connection) {
  return becomesReady(connection, POLLOUT, Clock::now());
}

void endConnection(xcb_connection_t* connection) {
  shutdown(xcb_get_file_descriptor(connection), SHUT_RDWR);
}

}  // namespace orvane::host::xcb
