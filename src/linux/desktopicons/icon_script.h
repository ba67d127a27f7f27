#pragma once

#include <string_view>

namespace orvane::host::desktopicons {

enum class IconWish { hide, show };

// What a script asks for; nothing but these two texts is understood.
struct ParsedScript {
  bool understood = false;
  IconWish wish = IconWish::show;
};
[[nodiscard]] ParsedScript parseIconScript(std::string_view source);

}  // namespace orvane::host::desktopicons
