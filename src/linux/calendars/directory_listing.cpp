#include "linux/calendars/directory_listing.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <tuple>
#include <utility>

#include "linux/calendars/shown_text.h"
#include "linux/calendars/stable_hash.h"

namespace orvane::host {
namespace {

// The clock of file times advances once per timer tick, which is 10 ms at the slowest.
constexpr double freshSeconds = 0.02;
constexpr std::size_t displayNameBytes = 4096;

struct CloseDirectory {
  void operator()(DIR* directory) const { closedir(directory); }
};
using Directory = std::unique_ptr<DIR, CloseDirectory>;

double seconds(const timespec& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

double wallClock() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return seconds(now);
}

std::uint64_t stampOf(const struct stat& status) {
  StableHash hash;
  hash.add(status.st_dev).add(status.st_ino).add(status.st_size);
  hash.add(status.st_mtim.tv_sec).add(status.st_mtim.tv_nsec);
  hash.add(status.st_ctim.tv_sec).add(status.st_ctim.tv_nsec);
  return std::max<std::uint64_t>(hash.value(), 1);
}

bool isOnRemoteFileSystem(int directory) {
  // Magic numbers of statfs(2): NFS, SMB, CIFS, SMB 2, FUSE, 9P, Ceph, AFS.
  constexpr std::array<std::uint32_t, 8> remote{0x6969,     0x517B,     0xFF534D42, 0xFE534D42,
                                                0x65735546, 0x01021997, 0x00C36400, 0x5346414F};
  struct statfs status {};
  if (fstatfs(directory, &status) != 0) return false;
  const auto type = static_cast<std::uint32_t>(status.f_type);
  return std::find(remote.begin(), remote.end(), type) != remote.end();
}

std::string readLink(int directory, const char* name) {
  std::array<char, PATH_MAX> target{};
  const auto length = readlinkat(directory, name, target.data(), target.size());
  return length > 0 ? std::string(target.data(), static_cast<std::size_t>(length)) : std::string();
}

// Sorts one directory's entries into a listing.
class Lister {
 public:
  Lister(std::string path, int directory)
      : path_(std::move(path)), directory_(directory), now_(wallClock()) {
    listing_.state = DirectoryListing::State::listed;
    listing_.isRemote = isOnRemoteFileSystem(directory);
  }

  void add(const dirent& entry) {
    if (entry.d_name[0] == '.') return;
    struct stat status {};
    const bool isLink = entry.d_type == DT_LNK || (entry.d_type == DT_UNKNOWN && isSymlink(entry));
    if (entry.d_type == DT_DIR) {
      addFolder(entry.d_name, false);
    } else if (fstatat(directory_, entry.d_name, &status, 0) != 0) {
      addUnknown(entry.d_name, isLink, errno);
    } else if (S_ISDIR(status.st_mode)) {
      addFolder(entry.d_name, isLink);
    } else if (S_ISREG(status.st_mode) && isItemName(entry.d_name)) {
      addItem(entry.d_name, status, isLink);
    } else {
      listing_.holdsOtherFiles = true;
      if (S_ISREG(status.st_mode) && std::string_view(entry.d_name) == "displayname") {
        listing_.displayName = readDisplayName();
      }
    }
  }

  DirectoryListing finish() {
    std::sort(listing_.items.begin(), listing_.items.end(),
              [](const auto& a, const auto& b) { return a.name < b.name; });
    std::sort(listing_.folders.begin(), listing_.folders.end(), [](const auto& a, const auto& b) {
      return std::tie(a.isLink, a.name) < std::tie(b.isLink, b.name);
    });
    return std::move(listing_);
  }

 private:
  [[nodiscard]] std::string inside(const std::string& name) const {
    return path_ == "/" ? path_ + name : path_ + "/" + name;
  }

  [[nodiscard]] bool isSymlink(const dirent& entry) const {
    struct stat status {};
    return fstatat(directory_, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISLNK(status.st_mode);
  }

  void addFolder(const std::string& name, bool isLink) {
    auto path = inside(name);
    if (!isLink) {
      listing_.folders.push_back({name, std::move(path), false});
    } else if (auto target = realPathOf(path)) {
      listing_.folders.push_back({name, std::move(*target), true});
    }
  }

  void addItem(const std::string& name, const struct stat& status, bool isLink) {
    ListedItem item{name, stampOf(status), false, std::nullopt};
    const double changed = std::max(seconds(status.st_mtim), seconds(status.st_ctim));
    item.isFresh = std::abs(now_ - changed) < freshSeconds;
    if (isLink) item.linkTarget = realPathOf(inside(name));
    listing_.items.push_back(std::move(item));
  }

  // An entry that cannot be looked at: it is gone again, it is a link into nowhere or round in
  // circles, or the directory may be listed but not entered.
  void addUnknown(const std::string& name, bool isLink, int error) {
    if (isLink) {
      auto target = readLink(directory_, name.c_str());
      if (target.empty()) return;
      listing_.brokenLinks.push_back(target.front() == '/' ? target : inside(target));
    } else if (error == EACCES && isItemName(name)) {
      listing_.items.push_back({name, 0, false, std::nullopt});
    } else if (error == EACCES) {
      listing_.holdsOtherFiles = true;
    }
  }

  [[nodiscard]] std::optional<std::string> readDisplayName() const {
    const int file =
        openat(directory_, "displayname", O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (file < 0) return std::nullopt;
    std::array<char, displayNameBytes> bytes{};
    struct stat status {};
    // Looked at once more, since it may have been replaced by something that has no end.
    const bool isFile = fstat(file, &status) == 0 && S_ISREG(status.st_mode);
    const auto count = isFile ? read(file, bytes.data(), bytes.size()) : 0;
    close(file);
    if (count <= 0) return std::nullopt;
    auto text = shownText({bytes.data(), static_cast<std::size_t>(count)});
    return text.empty() ? std::nullopt : std::optional(std::move(text));
  }

  std::string path_;
  int directory_;
  double now_;
  DirectoryListing listing_;
};

}  // namespace

bool isItemName(std::string_view name) {
  constexpr std::string_view ending = ".ics";
  if (name.size() <= ending.size() || name.front() == '.') return false;
  const auto last = name.substr(name.size() - ending.size());
  return std::equal(last.begin(), last.end(), ending.begin(), [](char a, char b) {
    return (a >= 'A' && a <= 'Z' ? static_cast<char>(a - 'A' + 'a') : a) == b;
  });
}

DirectoryListing listDirectory(const std::string& path) {
  const int descriptor = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK);
  const Directory directory(descriptor < 0 ? nullptr : fdopendir(descriptor));
  if (!directory) {
    DirectoryListing none;
    const bool isGone = errno == ENOENT || errno == ENOTDIR;
    none.state = isGone ? DirectoryListing::State::missing : DirectoryListing::State::refused;
    if (descriptor >= 0) close(descriptor);
    return none;
  }
  Lister lister(path, descriptor);
  while (const dirent* entry = readdir(directory.get())) lister.add(*entry);
  return lister.finish();
}

std::optional<std::string> realPathOf(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(path.c_str(), nullptr),
                                                             &std::free);
  if (!resolved) return std::nullopt;
  return std::string(resolved.get());
}

}  // namespace orvane::host
