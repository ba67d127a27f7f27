#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "linux/calendars/calendar_provider.h"
#include "linux/calendars/folder_library.h"
#include "linux/calendars/folder_provider.h"
#include "linux/calendars/folder_watch.h"

namespace orvane::host {

// A FolderLibrary for several threads: every query first takes in what changed, and answers with
// what there is when that takes too long. Queries and looks block and are for worker threads; they
// end soon once stop() was called.
class SharedLibrary {
 public:
  // `watched` is called on the main thread when folders changed, `unfinished` on worker threads
  // when a query was answered before everything was read, or found what nobody has been told of.
  // Made on the main thread.
  SharedLibrary(const FolderOptions& options, Date now, std::function<void()> watched,
                std::function<void()> unfinished);

  // Main thread. No callback is called any more.
  void stop();

  struct Look {
    bool isComplete = true;
    bool hasSuspects = false;
    bool needsRescans = false;  // changes come without notice
    bool isOutOfWatches = false;
  };
  enum class Thoroughness { asLongAsAQuery, toTheEnd };
  // One look at a time.
  Look look(Thoroughness thoroughness);
  // Everything is listed again by the next look, watches included.
  void doubtEverything();
  void doubtSuspects() { doubtsSuspects_ = true; }

  std::vector<EKCalendar> calendars(EKEntityType type);
  std::vector<EKEvent> events(Date start, Date end, const CalendarSelection& selection);
  std::vector<EKReminder> openReminders(const CalendarSelection& selection);

  // Any thread, at once.
  [[nodiscard]] ProviderState state() const;
  // Whether looks or queries found the folders changed since this was last asked.
  bool takeChanged() { return changed_.exchange(false); }

 private:
  FolderLibrary::Update update(std::optional<EKEventPredicate> query,
                               const ReaderClient::Pace& pace);
  void updateForQuery(std::optional<EKEventPredicate> query);
  void doubtListings();
  // Of some folders changes come without notice. With `updating_` held.
  [[nodiscard]] bool missesChanges() const { return !watch_.isComplete() || library_.hasRemote(); }
  [[nodiscard]] ReaderClient::Pace queryPace() const;
  [[nodiscard]] ReaderClient::Pace thoroughPace() const;

  std::function<std::string()> localTimeZone_;
  std::chrono::milliseconds patience_;
  Date firstLook_;
  std::function<void()> unfinished_;
  FolderWatch watch_;
  std::atomic<bool> stopped_ = false;
  std::atomic<bool> changed_ = false;
  std::atomic<bool> doubtsSuspects_ = false;
  std::atomic<bool> owesNews_ = false;  // a query was answered before all was read

  std::timed_mutex updating_;
  FolderLibrary library_;

  mutable std::mutex stateMutex_;
  ProviderState state_;
};

}  // namespace orvane::host
