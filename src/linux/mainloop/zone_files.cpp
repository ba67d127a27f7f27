#include "linux/mainloop/zone_files.h"

#include <limits.h>
#include <sys/inotify.h>

#include <algorithm>
#include <array>
#include <iostream>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <system_error>
#include <utility>

#include "linux/files/file_descriptor.h"
#include "linux/mainloop/fd_source.h"

namespace orvane::host {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostLinks = 40;
constexpr Duration kQuiet = std::chrono::milliseconds(100);
constexpr Duration kRescan = std::chrono::minutes(1);
constexpr std::uint32_t kEvents =
    IN_CLOSE_WRITE | IN_CREATE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_ONLYDIR;

// What tells one state of the file from another without reading it.
struct FileState {
  fs::path target;
  std::optional<fs::file_time_type> written;
  std::uintmax_t size = 0;

  friend bool operator==(const FileState&, const FileState&) = default;
};

FileState stateOf(const fs::path& file) {
  std::error_code error;
  FileState state;
  state.target = fs::weakly_canonical(file, error);
  const auto written = fs::last_write_time(file, error);
  if (error) return state;
  state.written = written;
  const auto size = fs::file_size(file, error);
  if (!error) state.size = size;
  return state;
}

class WatchedZoneFiles final : public ZoneFiles {
 public:
  WatchedZoneFiles(MainActor& actor, fs::path file, std::function<void()> changed)
      : actor_(actor), file_(std::move(file)), changed_(std::move(changed)) {
    watch();
  }

 private:
  // Begins anew each time, because a changed link leads through other folders.
  void watch() {
    state_ = stateOf(file_);
    source_.reset();
    watched_.clear();
    inotify_ = FileDescriptor(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    bool complete = static_cast<bool>(inotify_);
    for (const auto& link : complete ? linkChain(file_) : std::vector<fs::path>()) {
      complete = watchName(link) && complete;
    }
    if (inotify_) {
      source_ = std::make_unique<FdSource>(inotify_.get(), SourcePriority::normal,
                                           [this] { readEvents(); });
    }
    if (!complete) rescanLater();
  }

  bool watchName(const fs::path& link) {
    const auto folder = link.parent_path();
    const int watch = inotify_add_watch(inotify_.get(), folder.c_str(), kEvents);
    if (watch < 0) return false;
    watched_[watch].insert(link.filename().string());
    return true;
  }

  void rescanLater() {
    if (!complained_) {
      std::cerr << "orvane: cannot watch the time zone for changes; looking once a minute\n";
      complained_ = true;
    }
    timer_ = actor_.after(kRescan, [this] {
      const bool differs = stateOf(file_) != state_;
      watch();
      if (differs) changed_();
    });
  }

  void readEvents() {
    alignas(inotify_event) std::array<char, 4096> buffer;
    bool concerned = false;
    while (true) {
      const auto size = ::read(inotify_.get(), buffer.data(), buffer.size());
      if (size <= 0) break;
      concerned = anyConcerns(buffer.data(), buffer.data() + size) || concerned;
    }
    if (!concerned) return;
    timer_ = actor_.after(kQuiet, [this] {
      watch();
      changed_();
    });
  }

  [[nodiscard]] bool anyConcerns(const char* begin, const char* end) const {
    bool concerned = false;
    while (begin < end) {
      const auto& event = *reinterpret_cast<const inotify_event*>(begin);
      concerned = concerned || concerns(event);
      begin += sizeof(inotify_event) + event.len;
    }
    return concerned;
  }

  [[nodiscard]] bool concerns(const inotify_event& event) const {
    if ((event.mask & (IN_Q_OVERFLOW | IN_IGNORED)) != 0) return true;
    const auto names = watched_.find(event.wd);
    return names != watched_.end() && event.len > 0 && names->second.contains(event.name);
  }

  MainActor& actor_;
  const fs::path file_;
  const std::function<void()> changed_;
  FileState state_;
  std::map<int, std::set<std::string>> watched_;
  FileDescriptor inotify_;
  std::unique_ptr<FdSource> source_;
  Subscription timer_;
  bool complained_ = false;
};

}  // namespace

std::vector<fs::path> linkChain(const fs::path& file) {
  std::vector<fs::path> chain;
  std::error_code error;
  fs::path next = fs::absolute(file, error).lexically_normal();
  while (chain.size() < kMostLinks && std::ranges::find(chain, next) == chain.end()) {
    chain.push_back(next);
    const auto target = fs::read_symlink(next, error);
    if (error) break;
    // A relative target counts from the folder of the link.
    next = (next.parent_path() / target).lexically_normal();
  }
  return chain;
}

std::unique_ptr<ZoneFiles> makeZoneFiles(MainActor& actor, fs::path file,
                                         std::function<void()> changed) {
  return std::make_unique<WatchedZoneFiles>(actor, std::move(file), std::move(changed));
}

}  // namespace orvane::host
