#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <unordered_map>

#include "linux/calendars/watch_rules.h"

namespace orvane::host {

// Hears of changes in directories, through inotify. The main loop reads the events and calls
// `changed` after each handful that concerns a rule; what they were about is kept until taken.
class FolderWatch {
 public:
  // inotify_add_watch(2), or something that fails as it can.
  using AddWatch = std::function<int(int descriptor, const char* path, std::uint32_t mask)>;

  // Main thread.
  FolderWatch(std::function<void()> changed, AddWatch addWatch);
  // Any thread, after stop().
  ~FolderWatch();
  FolderWatch(const FolderWatch&) = delete;

  // Main thread. Nothing is called any more.
  void stop();

  // Any thread. Events of the directory count from here on, all of them until adopt() brings its
  // rules: so cover a directory first and list it then. True when it was not covered before.
  bool cover(const std::string& directory);
  // Any thread. Replaces all rules and gives up the watches that have none.
  void adopt(WatchRules rules);
  // Any thread. False once a directory could not be watched since the system has no watches left;
  // covering everything anew without a failure makes it true again.
  [[nodiscard]] bool isComplete() const;
  void forgetFailures();
  // Any thread.
  FolderChanges take();
  [[nodiscard]] bool hasChanges() const;
  void mark(const FolderChanges& changes);

 private:
  void drain();
  bool note(int watch, std::uint32_t mask, const std::string& name);
  bool noteChildOf(const std::string& directory, std::uint32_t mask, const std::string& name);
  void forget(int watch);

  std::function<void()> changed_;
  AddWatch addWatch_;
  int descriptor_;
  unsigned source_ = 0;  // in the main loop

  mutable std::mutex mutex_;
  WatchRules rules_;
  std::unordered_map<std::string, int> watches_;
  std::unordered_map<int, std::string> directories_;
  FolderChanges changes_;
  bool isComplete_ = true;
};

}  // namespace orvane::host
