#include "linux/calendars/memory_file.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace orvane::host {
namespace {

bool writeAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = write(descriptor, text.data(), text.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    text.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

}  // namespace

std::optional<MemoryFile> MemoryFile::holding(std::string_view text) {
  FileDescriptor file(memfd_create("orvane-calendar", MFD_CLOEXEC));
  if (file.get() < 0 || !writeAll(file.get(), text)) return std::nullopt;
  return MemoryFile(std::move(file));
}

std::string MemoryFile::path() const {
  return "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(file_.get());
}

}  // namespace orvane::host
