#pragma once

#include <string>

namespace orvane {

// How the connection to a desktop ended.
struct DesktopLoss {
  std::string what;  // a clause: "The connection to the X server is lost"
  // The desktop ended it because of something that we asked for; it was told on standard error.
  bool isRefusal = false;
};

}  // namespace orvane
