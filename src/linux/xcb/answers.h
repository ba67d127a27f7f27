#pragma once

#include <chrono>

#include "linux/xcb/reply.h"

namespace orvane::host::xcb {

// How long a server may take to answer, or to read what was sent, while it stands. One that takes
// longer is not there any more.
inline constexpr std::chrono::seconds serverPatience{5};

// The reply to a request, as memory to be freed; null for an error, which is freed, and where the
// connection is or thereby becomes lost.
[[nodiscard]] void* awaitAnswer(xcb_connection_t* connection, unsigned int sequence);

// xcb's functions for replies wait for ever; this asks for the reply of a request that was made.
template <class R, class Cookie>
[[nodiscard]] Reply<R> answerTo(xcb_connection_t* connection, Cookie asked) {
  return Reply<R>(static_cast<R*>(awaitAnswer(connection, asked.sequence)));
}

// Waits until the server has dealt with all that it was asked for; xcb_request_check() then knows
// the answer. False where the connection is or thereby becomes lost.
[[nodiscard]] bool settle(xcb_connection_t* connection);

// Whether the server has done what a checked request asked for.
[[nodiscard]] bool wasServed(xcb_connection_t* connection, xcb_void_cookie_t asked);

// Whether what is sent now goes out without waiting for the server.
[[nodiscard]] bool takesRequests(xcb_connection_t* connection);

// Ends the connection, which whoever reads it then finds lost.
void endConnection(xcb_connection_t* connection);

}  // namespace orvane::host::xcb
