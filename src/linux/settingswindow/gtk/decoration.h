#pragma once

#include <string>
#include <string_view>

namespace orvane::window {

// Which buttons a title bar has, on the sides where the desktop has them ("menu:minimize,close" and
// the like). A button that the desktop leaves out, though the window can be closed or minimised,
// stands beside the close button, or where that usually is; one that the window has no use for
// goes.
[[nodiscard]] std::string titleButtons(std::string_view desktopLayout, bool isClosable,
                                       bool isMiniaturizable);

}  // namespace orvane::window
