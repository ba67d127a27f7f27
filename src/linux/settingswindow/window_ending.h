#pragma once

#include <string>

namespace orvane::host {

// Why the program of a window is no more.
struct WindowEnding {
  enum class Cause {
    notStarted,  // `number` is an errno
    exited,      // `number` is its exit status
    killed,      // `number` is the signal
    hungUp,      // it closed the socket and stayed
    silent,      // it acknowledged nothing for too long
    nonsense,    // what it said could not be understood
    tooMuch      // there was more to show than it could be told
  };
  Cause cause = Cause::exited;
  int number = 0;
  friend bool operator==(const WindowEnding&, const WindowEnding&) = default;
};

// Of a status as waitpid() tells it.
[[nodiscard]] WindowEnding endingOf(int waitStatus);

// A sentence for a person; empty for an end that is as it should be. `wasShown` tells whether the
// window had been on the screen.
[[nodiscard]] std::string sentenceAbout(const WindowEnding& ending, bool wasShown);

}  // namespace orvane::host
