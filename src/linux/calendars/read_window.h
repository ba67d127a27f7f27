#pragma once

#include <string>

namespace orvane::host {

// What occurrences are kept, and in which zone local times were understood.
struct ReadWindow {
  double start = 0;
  double end = 0;
  std::string localTimeZone;

  friend bool operator==(const ReadWindow&, const ReadWindow&) = default;
};

// The part of a window that was last asked for.
struct ShownSpan {
  double start = 0;
  double end = 0;

  friend bool operator==(const ShownSpan&, const ShownSpan&) = default;
};

// The window to read for a query of [start, end): the one that is read already when it will do,
// else one with a margin, so that the next days' queries need not read everything again.
ReadWindow windowFor(const ReadWindow& current, double start, double end,
                     const std::string& localTimeZone);

// What is read when nobody has asked for anything yet: today, wherever its bounds are, and a week.
ShownSpan firstSpan(double now);

}  // namespace orvane::host
