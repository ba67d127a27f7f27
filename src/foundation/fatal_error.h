#pragma once

#include <string_view>

namespace orvane {

// Stops the process with a sentence on standard error: for states that cannot come about unless
// the program itself is wrong.
[[noreturn]] void fatalError(std::string_view sentence);

}  // namespace orvane
