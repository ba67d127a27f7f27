#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace orvane::ical {

struct FileBytes {
  std::optional<std::string> text;
  bool isTooLarge = false;  // why there is no text; else the file cannot be read
};

// The whole of a regular file, symbolic links followed. Whatever else lies there (a pipe, a device,
// a folder) counts as unreadable and is never waited for.
FileBytes readRegularFile(const std::string& path, std::size_t mostBytes);

}  // namespace orvane::ical
