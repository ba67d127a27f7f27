#pragma once

#include <glib.h>

#include <functional>

namespace orvane::host::hotkey {

// Calls `readable` in a turn of the default main context whenever something can be read from the
// descriptor, or it has broken, for as long as this lives. The call may end this.
class ReadableWatch {
 public:
  ReadableWatch(int descriptor, std::function<void()> readable);
  ReadableWatch(const ReadableWatch&) = delete;
  ReadableWatch& operator=(const ReadableWatch&) = delete;
  ~ReadableWatch();

 private:
  const std::function<void()> readable_;
  guint source_ = 0;
};

}  // namespace orvane::host::hotkey
