#pragma once

#include <string>
#include <variant>

#include "linux/paint/png.h"

namespace orvane::tools {

// What the board stands on: one colour, written "#203040", or a PNG file, scaled to fill the
// picture and cut to it. Answers a sentence where the text is neither.
std::variant<host::Picture, std::string> makeBackdrop(const std::string& background, int width,
                                                      int height);

}  // namespace orvane::tools
