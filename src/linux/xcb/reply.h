// xcb/ is what the adapters that speak to an X server share: replies with an owner, and waits that
// come to an end.
#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace orvane::host::xcb {

struct FreeMemory {
  void operator()(void* memory) const { std::free(memory); }
};
// Replies, errors and events are memory that the caller of xcb frees.
template <class T>
using Reply = std::unique_ptr<T, FreeMemory>;

}  // namespace orvane::host::xcb
