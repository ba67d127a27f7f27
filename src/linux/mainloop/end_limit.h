#pragma once

#include <chrono>
#include <memory>

namespace orvane::host {

// Bounds how long the program takes to end, which waits for what is being read and written: on a
// disk or a server that hangs, that may be for ever.
class EndLimit {
 public:
  EndLimit();
  EndLimit(const EndLimit&) = delete;
  EndLimit& operator=(const EndLimit&) = delete;
  ~EndLimit();

  // Unless this is destroyed within that time, the process ends at once, with a line that says so
  // and the status 0, lest whoever sees to its running starts it anew. Without a thread for it
  // there is no limit. Once only.
  void begin(std::chrono::milliseconds patience);

 private:
  class Watch;
  std::unique_ptr<Watch> watch_;
};

}  // namespace orvane::host
