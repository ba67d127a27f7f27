#pragma once

#include <string>

namespace orvane {

// What whoever started this process told it about that.
struct StartMarks {
  // The bus did, because somebody called the program's name.
  bool isByBus = false;
  // The session did by itself, and nobody wants to see more than the board: ORVANE_START is
  // "login". The autostart entry and the user unit say so.
  bool isWithSession = false;
  // Lets a window take the focus: an XDG activation token or a startup id, else empty.
  std::string activationToken;
};

// Takes them out of the environment, so that no process started from here takes them for its own.
// To be called before there is a second thread.
[[nodiscard]] StartMarks takeStartMarks();

}  // namespace orvane
