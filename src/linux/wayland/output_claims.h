#pragma once

#include <cstdint>
#include <map>

namespace orvane::host::wayland {

// Which window stands on which output. Mirrored outputs have the same frame, by which a window asks
// for its place: each window takes one that no other window stands on.
class OutputClaims {
 public:
  // `output` is a global's name; 0: none. A window has one claim at most.
  void claim(const void* window, std::uint32_t output) {
    if (output == 0) {
      claims_.erase(window);
    } else {
      claims_[window] = output;
    }
  }
  [[nodiscard]] bool isTakenByAnother(const void* window, std::uint32_t output) const {
    for (const auto& [holder, held] : claims_) {
      if (holder != window && held == output) return true;
    }
    return false;
  }

 private:
  std::map<const void*, std::uint32_t> claims_;
};

}  // namespace orvane::host::wayland
