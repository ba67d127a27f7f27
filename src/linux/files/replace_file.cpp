#include "linux/files/replace_file.h"

#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>
#include <system_error>

#include "linux/files/file_descriptor.h"

namespace orvane::host {
namespace {

namespace fs = std::filesystem;

int writeAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const auto size = ::write(descriptor, text.data(), text.size());
    if (size < 0 && errno != EINTR) return errno;
    if (size > 0) text.remove_prefix(static_cast<std::size_t>(size));
  }
  return 0;
}

mode_t modeFor(const fs::path& target, mode_t ofNewFiles) {
  struct stat status {};
  return ::stat(target.c_str(), &status) == 0 ? status.st_mode & 07777 : ofNewFiles;
}

int fill(int descriptor, mode_t mode, const std::string& text) {
  if (const int error = writeAll(descriptor, text)) return error;
  if (::fchmod(descriptor, mode) != 0) return errno;
  return ::fsync(descriptor) == 0 ? 0 : errno;
}

// The new name is on the disk when its folder is. A folder that cannot be synced is no failure: the
// content is safe, and the old one would be complete too.
void syncFolder(const fs::path& folder) {
  const FileDescriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor) ::fsync(descriptor.get());
}

bool isFolder(const fs::path& path) {
  std::error_code unknown;  // such as links that run in a circle
  return fs::is_directory(path, unknown);
}

}  // namespace

int makeFolders(const fs::path& folder) {
  if (folder.empty() || ::mkdir(folder.c_str(), 0700) == 0) return 0;
  if (errno == EEXIST) return isFolder(folder) ? 0 : ENOTDIR;
  if (errno != ENOENT || !folder.has_relative_path()) return errno;
  if (const int error = makeFolders(folder.parent_path())) return error;
  return ::mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST ? 0 : errno;
}

int replaceFile(const fs::path& target, const std::string& text, mode_t ofNewFiles) {
  std::string name = target.string() + ".XXXXXX";
  FileDescriptor descriptor(::mkostemp(name.data(), O_CLOEXEC));
  if (!descriptor) return errno;
  int error = fill(descriptor.get(), modeFor(target, ofNewFiles), text);
  if (::close(descriptor.release()) != 0 && error == 0) error = errno;
  if (error == 0 && ::rename(name.c_str(), target.c_str()) != 0) error = errno;
  if (error != 0) {
    ::unlink(name.c_str());
    return error;
  }
  syncFolder(target.parent_path());
  return 0;
}

}  // namespace orvane::host
