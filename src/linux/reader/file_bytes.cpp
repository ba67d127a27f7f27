#include "linux/reader/file_bytes.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "linux/files/file_descriptor.h"

namespace orvane::ical {

namespace {

// Reads to the end, and at most one byte more than allowed, which tells that there is more.
std::optional<std::string> readUpTo(int descriptor, std::size_t expected, std::size_t mostBytes) {
  std::string text;
  std::size_t filled = 0;
  for (;;) {
    const std::size_t room = std::min(std::max(expected + 1, filled * 2), mostBytes + 1);
    if (filled == room) return text;
    text.resize(room);
    const ssize_t count = read(descriptor, text.data() + filled, room - filled);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return std::nullopt;
    if (count == 0) {
      text.resize(filled);
      return text;
    }
    filled += static_cast<std::size_t>(count);
  }
}

}  // namespace

FileBytes readRegularFile(const std::string& path, std::size_t mostBytes) {
  // Without O_NONBLOCK, opening a pipe that nobody writes to would never return.
  const host::FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat status {};
  if (file.get() < 0 || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
    return {};
  }
  const auto size = static_cast<std::size_t>(status.st_size);
  if (size > mostBytes) return {std::nullopt, true};
  auto text = readUpTo(file.get(), size, mostBytes);
  if (text && text->size() > mostBytes) return {std::nullopt, true};
  return {std::move(text), false};
}

}  // namespace orvane::ical
