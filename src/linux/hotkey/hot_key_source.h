#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace orvane::host::hotkey {

// One way to hear of a key wherever the user types. Giving the source up gives the key back.
class HotKeySource {
 public:
  virtual ~HotKeySource() = default;
};

// A key with modifiers in the platform's terms.
struct Combination {
  std::uint32_t keyCode = 0;
  std::uint32_t modifiers = 0;

  friend bool operator==(const Combination&, const Combination&) = default;
};

using Pressed = std::function<void()>;

}  // namespace orvane::host::hotkey
