#pragma once

#include <cstddef>
#include <functional>

#include "linux/wire/reader_messages.h"

namespace orvane::ical {

// Larger files are not read at all.
inline constexpr std::size_t kLargestFile = std::size_t{64} << 20;

// Reads the files of a request one after the other and hands out each answer as soon as it is
// known; stops when the receiver answers false. `beforeFile` is called before each.
void readFiles(const wire::ReadRequest& request, const std::function<void()>& beforeFile,
               const std::function<bool(const wire::FileAnswer&)>& receive);

}  // namespace orvane::ical
