#pragma once

#include <chrono>
#include <optional>

namespace orvane::host {

// Decides which whole second of the wall clock a beat announces and when to wake for the next. It
// reads no clock. Times are counted from 1970-01-01T00:00:00Z.
class SecondBeat {
 public:
  using Time = std::chrono::nanoseconds;
  using Second = std::chrono::seconds;

  // Begins anew; answers when to wake.
  Time start(Time now);

  struct Beat {
    std::optional<Second> tick;  // the second to announce, if any
    Time next;                   // when to wake again
  };
  // The awaited time came. Late by a second or more (the process or the machine stood still), the
  // beat announces the second that it is now and leaves out those that went by.
  Beat reached(Time now);
  // The clock was set, or may have been: announces the new second at once unless it is the one
  // that was announced last.
  Beat clockChanged(Time now);

 private:
  Beat announce(Second second);

  Second awaited_{};
  std::optional<Second> last_;
};

}  // namespace orvane::host
