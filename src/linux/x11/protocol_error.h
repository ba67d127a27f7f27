#pragma once

#include <string>
#include <vector>

#include "linux/x11/xcb_types.h"

namespace orvane::host::x11 {

// The numbers that a server has given to an extension.
struct Extension {
  std::string name;
  int request = 0;     // major opcode of all its requests
  int firstError = 0;  // 0: it has no errors of its own
};

// What the server refused and why, as a sentence: "The X server refused ConfigureWindow: BadMatch."
// or "The X server refused RANDR request 42: BadOutput." The resource is left out, so that one
// cause has one sentence.
std::string describe(const xcb_generic_error_t& error,
                     const std::vector<Extension>& extensions = {});

}  // namespace orvane::host::x11
