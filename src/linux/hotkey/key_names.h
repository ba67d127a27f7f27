#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "linux/hotkey/hot_key_source.h"

namespace orvane::host::hotkey {

// The X keysym of a virtual key code (the key's place on an ANSI keyboard); the lower-case letter.
// Nothing for codes that no hot key of ours has.
[[nodiscard]] std::optional<std::uint32_t> keysymOf(std::uint32_t keyCode);

// The combination as a trigger in the form of the XDG shortcuts specification, such as
// "LOGO+SHIFT+z": the Command key is the one with the logo here.
[[nodiscard]] std::optional<std::string> shortcutTrigger(Combination combination);

}  // namespace orvane::host::hotkey
