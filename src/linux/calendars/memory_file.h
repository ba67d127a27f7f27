#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "linux/files/file_descriptor.h"

namespace orvane::host {

// A text as a file that lies in no folder, for a program of ours that is given paths. It is gone
// with this.
class MemoryFile {
 public:
  // Nothing when the system has no room for it.
  static std::optional<MemoryFile> holding(std::string_view text);

  // As long as this process lives and this object does; another process of the same user may open
  // it too.
  [[nodiscard]] std::string path() const;

 private:
  explicit MemoryFile(FileDescriptor file) : file_(std::move(file)) {}

  FileDescriptor file_;
};

}  // namespace orvane::host
