#include "linux/calendars/folder_watch.h"

#include <glib-unix.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>
#include <vector>

namespace orvane::host {
namespace {

// IN_CLOSE_WRITE instead of IN_MODIFY: a file that is being written is read when it is whole. An
// item made with link(2) announces itself with IN_CREATE alone.
constexpr std::uint32_t watchedEvents = IN_CREATE | IN_MOVED_TO | IN_CLOSE_WRITE | IN_DELETE |
                                        IN_MOVED_FROM | IN_DELETE_SELF | IN_MOVE_SELF | IN_ATTRIB |
                                        IN_ONLYDIR;

}  // namespace

FolderWatch::FolderWatch(std::function<void()> changed, AddWatch addWatch)
    : changed_(std::move(changed)),
      addWatch_(addWatch ? std::move(addWatch) : AddWatch(inotify_add_watch)),
      descriptor_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
  if (descriptor_ < 0) {
    isComplete_ = false;
    return;
  }
  const auto onReadable = [](gint, GIOCondition, gpointer self) -> gboolean {
    static_cast<FolderWatch*>(self)->drain();
    return G_SOURCE_CONTINUE;
  };
  source_ = g_unix_fd_add(descriptor_, G_IO_IN, onReadable, this);
}

FolderWatch::~FolderWatch() {
  if (descriptor_ >= 0) close(descriptor_);
}

void FolderWatch::stop() {
  if (source_ != 0) g_source_remove(std::exchange(source_, 0));
}

bool FolderWatch::cover(const std::string& directory) {
  const std::lock_guard lock(mutex_);
  if (descriptor_ < 0) return false;
  const int watch = addWatch_(descriptor_, directory.c_str(), watchedEvents);
  if (watch < 0) {
    // Out of watches, or of memory for them. What is gone or closed to us is others' business.
    if (errno == ENOSPC || errno == ENOMEM) isComplete_ = false;
    return false;
  }
  const auto known = watches_.find(directory);
  const bool isNew = known == watches_.end() || known->second != watch;
  if (isNew && known != watches_.end()) forget(known->second);
  watches_[directory] = watch;
  directories_[watch] = directory;  // a moved directory keeps its watch and changes its name
  return isNew;
}

void FolderWatch::adopt(WatchRules rules) {
  const std::lock_guard lock(mutex_);
  rules_.swap(rules);  // the old ones are freed after the lock
  std::vector<int> idle;
  for (const auto& [watch, directory] : directories_) {
    if (!rules_.contains(directory)) idle.push_back(watch);
  }
  for (const int watch : idle) forget(watch);
}

void FolderWatch::forget(int watch) {
  const auto found = directories_.find(watch);
  if (found == directories_.end()) return;
  inotify_rm_watch(descriptor_, watch);
  const auto known = watches_.find(found->second);
  if (known != watches_.end() && known->second == watch) watches_.erase(known);
  directories_.erase(found);
}

bool FolderWatch::isComplete() const {
  const std::lock_guard lock(mutex_);
  return isComplete_;
}

void FolderWatch::forgetFailures() {
  const std::lock_guard lock(mutex_);
  isComplete_ = descriptor_ >= 0;
}

FolderChanges FolderWatch::take() {
  const std::lock_guard lock(mutex_);
  return std::exchange(changes_, {});
}

bool FolderWatch::hasChanges() const {
  const std::lock_guard lock(mutex_);
  return changes_.any();
}

void FolderWatch::mark(const FolderChanges& changes) {
  const std::lock_guard lock(mutex_);
  changes_.everything = changes_.everything || changes.everything;
  changes_.places = changes_.places || changes.places;
  changes_.directories.insert(changes.directories.begin(), changes.directories.end());
}

void FolderWatch::drain() {
  // One handful per turn keeps the turn short; the loop comes back while there is more.
  alignas(inotify_event) std::array<char, 32768> bytes{};
  const auto count = read(descriptor_, bytes.data(), bytes.size());
  bool concerning = false;
  {
    const std::lock_guard lock(mutex_);
    for (std::ptrdiff_t at = 0; at < count;) {
      inotify_event event{};
      std::memcpy(&event, bytes.data() + at, sizeof event);
      const char* name = bytes.data() + at + sizeof event;
      at += static_cast<std::ptrdiff_t>(sizeof event + event.len);
      concerning = note(event.wd, event.mask, event.len > 0 ? name : "") || concerning;
    }
  }
  if (concerning) changed_();
}

bool FolderWatch::note(int watch, std::uint32_t mask, const std::string& name) {
  if ((mask & IN_Q_OVERFLOW) != 0) return changes_.everything = true;
  const auto found = directories_.find(watch);
  if (found == directories_.end()) return false;
  const std::string directory = found->second;
  if ((mask & (IN_IGNORED | IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT)) != 0) {
    // Gone, or elsewhere: the path must be looked up anew, and so must what led to it.
    if ((mask & IN_IGNORED) != 0) {
      const auto known = watches_.find(directory);
      if (known != watches_.end() && known->second == watch) watches_.erase(known);
      directories_.erase(found);
    }
    changes_.directories.insert(directory);
    return changes_.places = true;
  }
  if (name.empty()) {
    changes_.directories.insert(directory);
    return true;
  }
  return noteChildOf(directory, mask, name);
}

bool FolderWatch::noteChildOf(const std::string& directory, std::uint32_t mask,
                              const std::string& name) {
  const bool isDirectory = (mask & IN_ISDIR) != 0;
  const auto rules = rules_.find(directory);
  if (rules == rules_.end()) {
    changes_.directories.insert(directory);
    return true;
  }
  bool concerning = false;
  for (const auto& rule : rules->second) {
    if (!concerns(rule, name, isDirectory)) continue;
    concerning = true;
    if (rule.affected.empty()) {
      changes_.places = true;
    } else {
      changes_.directories.insert(rule.affected);
    }
    // Its permissions may be what changed, which only listing it shows.
    if (isDirectory) changes_.directories.insert(directory + "/" + name);
  }
  return concerning;
}

}  // namespace orvane::host
