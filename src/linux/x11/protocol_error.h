#pragma once

#include <string>

#include "linux/x11/xcb_types.h"

namespace orvane::host::x11 {

// What the server refused and why, as a sentence: "The X server refused ConfigureWindow: BadMatch."
// The resource is left out, so that one cause has one sentence.
std::string describe(const xcb_generic_error_t& error);

}  // namespace orvane::host::x11
