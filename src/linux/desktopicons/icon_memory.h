#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "linux/desktopicons/icon_backend.h"

namespace orvane::host::desktopicons {

// What the user's desktops were like before we hid their icons, in a file, so that a crash does not
// lose it. One record for each backend. The file is on the disk when a change returns, and gone
// when there is nothing to remember.
class IconMemory {
 public:
  explicit IconMemory(std::filesystem::path file) : file_(std::move(file)) {}

  [[nodiscard]] std::optional<IconState> find(const std::string& backend) const;
  // Answers whether it is safely written down.
  [[nodiscard]] bool remember(const std::string& backend, const IconState& state) const;
  void forget(const std::string& backend) const;

 private:
  const std::filesystem::path file_;
};

}  // namespace orvane::host::desktopicons
