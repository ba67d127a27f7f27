#include "linux/defaults/defaults_file.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <iostream>
#include <system_error>
#include <utility>

#include "linux/files/file_descriptor.h"
#include "linux/files/replace_file.h"

namespace orvane::host {
namespace {

namespace fs = std::filesystem;

// Far more than all settings together ever take.
constexpr std::size_t kLargest = 4 << 20;
constexpr int kMostAside = 10000;
constexpr int kMostLinks = 40;

// What the path stands for after all symbolic links, whether it exists or not; the path itself
// where the links run in a circle.
fs::path targetOf(const fs::path& path) {
  fs::path target = path;
  std::error_code error;
  for (int i = 0; i < kMostLinks; ++i) {
    const auto next = fs::read_symlink(target, error);
    if (error) return target;
    target = target.parent_path() / next;
  }
  return path;
}

bool isRegularFile(const fs::path& path) {
  std::error_code error;
  return fs::symlink_status(path, error).type() == fs::file_type::regular;
}

struct Content {
  std::string text;
  int error = 0;
};

Content contentOf(const fs::path& path) {
  // Opening must not wait for the other end of a pipe.
  const FileDescriptor descriptor(
      ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!descriptor) return {{}, errno};
  Content content;
  std::array<char, 16384> buffer;
  while (content.error == 0) {
    const auto size = ::read(descriptor.get(), buffer.data(), buffer.size());
    if (size == 0) break;
    if (size < 0) {
      if (errno != EINTR) content.error = errno;
    } else if (content.text.append(buffer.data(), size).size() > kLargest) {
      content.error = EFBIG;
    }
  }
  return content;
}

// Never onto a name that is taken.
int renameToFree(const fs::path& from, const fs::path& to) {
  if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return errno;
  // Not every file system knows the flag.
  std::error_code error;
  if (fs::exists(fs::symlink_status(to, error))) return EEXIST;
  return ::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

}  // namespace

std::optional<std::string> DefaultsFile::read() {
  if (path_.empty()) return std::nullopt;
  auto content = contentOf(path_);
  if (content.error == 0 && isRegularFile(targetOf(path_))) return std::move(content.text);
  const bool absent = content.error == ENOENT || content.error == ENOTDIR;
  if (!absent) setAside(content.error == 0 ? "it is not a file" : std::strerror(content.error));
  return std::nullopt;
}

void DefaultsFile::setAside(const std::string& why) {
  const std::lock_guard lock(mutex_);
  inTheWay_ = true;
  tryAside();
  std::cerr << "orvane: the settings in " << path_.string() << " cannot be used (" << why << "); "
            << (inTheWay_ ? "they stay there, and changed ones last until the program ends\n"
                          : "they are kept beside it, and the defaults apply\n");
}

// An errno, or 0.
int DefaultsFile::tryAside() {
  // Behind a link lies a file of ours, or something that is nobody's business to move.
  const auto target = targetOf(path_);
  const auto from = isRegularFile(target) ? target : path_;
  int error = EEXIST;
  for (int i = 1; i <= kMostAside && (error == EEXIST || error == ENOTEMPTY); ++i) {
    auto to = from;
    to += i == 1 ? ".damaged" : ".damaged-" + std::to_string(i);
    error = renameToFree(from, to);
  }
  if (error == ENOENT) error = 0;
  inTheWay_ = error != 0;
  return error;
}

void DefaultsFile::write(const std::string& text, std::uint64_t version) {
  const std::lock_guard lock(mutex_);
  if (version <= written_ || path_.empty()) return;
  int error = inTheWay_ ? tryAside() : 0;
  if (error == 0) error = tryWrite(text);
  if (error == 0) written_ = version;
  if (error != 0 && error != lastError_) {
    std::cerr << "orvane: the settings cannot be written to " << path_.string() << " ("
              << std::strerror(error) << "); they last until the program ends\n";
  }
  lastError_ = error;
}

// An errno, or 0.
int DefaultsFile::tryWrite(const std::string& text) const {
  const auto target = targetOf(path_);
  std::error_code ignored;
  if (fs::exists(target, ignored) && !isRegularFile(target)) return EISDIR;
  if (const int error = makeFolders(target.parent_path())) return error;
  return replaceFile(target, text);
}

std::uint64_t DefaultsFile::writtenVersion() const {
  const std::lock_guard lock(mutex_);
  return written_;
}

}  // namespace orvane::host
