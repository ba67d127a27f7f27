#include "linux/calendars/shared_library.h"

#include <utility>

#include "linux/calendars/library_answers.h"

namespace orvane::host {

SharedLibrary::SharedLibrary(const FolderOptions& options, Date now, std::function<void()> watched,
                             std::function<void()> unfinished)
    : localTimeZone_(options.localTimeZone),
      patience_(options.patience),
      firstLook_(now),
      unfinished_(std::move(unfinished)),
      watch_(std::move(watched), options.addWatch),
      library_(options.roots, ReaderClient(options.readerPath, {.perLoneFile = options.perFile}),
               watch_) {}

void SharedLibrary::stop() {
  stopped_ = true;
  watch_.stop();
}

SharedLibrary::Look SharedLibrary::look(Thoroughness thoroughness) {
  const std::lock_guard lock(updating_);
  const bool isThorough = thoroughness == Thoroughness::toTheEnd;
  const auto update = this->update(std::nullopt, isThorough ? thoroughPace() : queryPace());
  return {update.isComplete, update.hasSuspects, missesChanges(), !watch_.isComplete()};
}

void SharedLibrary::doubtEverything() {
  watch_.forgetFailures();
  doubtListings();
}

void SharedLibrary::doubtListings() {
  FolderChanges changes;
  changes.everything = true;
  watch_.mark(changes);
}

std::vector<EKCalendar> SharedLibrary::calendars(EKEntityType type) {
  updateForQuery(std::nullopt);
  const auto lock = library_.lock();
  return listedIn(contentsOf(library_), type);
}

std::vector<EKEvent> SharedLibrary::events(Date start, Date end,
                                           const CalendarSelection& selection) {
  updateForQuery(EKEventPredicate{start, end, std::nullopt});
  const auto lock = library_.lock();
  return eventsIn(contentsOf(library_), start, end, selection);
}

std::vector<EKReminder> SharedLibrary::openReminders(const CalendarSelection& selection) {
  updateForQuery(std::nullopt);
  const auto lock = library_.lock();
  return remindersIn(contentsOf(library_), selection);
}

ProviderState SharedLibrary::state() const {
  const std::lock_guard lock(stateMutex_);
  return state_;
}

// Where changes come without notice, whoever asks for the events has the folders listed; and what
// that finds is to be told to those who asked for something else shortly before.
void SharedLibrary::updateForQuery(std::optional<EKEventPredicate> query) {
  const std::unique_lock lock(updating_, patience_);
  const bool isDoubtful = lock && query && missesChanges();
  if (isDoubtful) doubtListings();
  const bool isComplete = lock && update(std::move(query), queryPace()).isComplete;
  if (stopped_) return;
  if (!isComplete) owesNews_ = true;
  if (!isComplete || (isDoubtful && changed_)) unfinished_();
}

FolderLibrary::Update SharedLibrary::update(std::optional<EKEventPredicate> query,
                                            const ReaderClient::Pace& pace) {
  const auto& known = library_.window();
  const bool isFirst = known == ReadWindow{};
  const auto first = firstSpan(firstLook_.secondsSince1970);
  double start = isFirst ? first.start : known.start;
  double end = isFirst ? first.end : known.end;
  if (query) {
    start = query->start.secondsSince1970;
    end = query->end.secondsSince1970;
  }
  if (doubtsSuspects_.exchange(false)) library_.retrySuspects();
  const auto window = windowFor(known, start, end, localTimeZone_());
  const auto shown = query || isFirst ? ShownSpan{start, end} : library_.shown();
  const auto update = library_.update(watch_.take(), window, shown, pace);
  const bool isNews = update.isComplete && owesNews_.exchange(false);
  if (update.changed || isNews) changed_ = true;

  const auto held = library_.lock();
  // Found out before the lock for which the main thread may be waiting.
  auto state = library_.state();
  const std::lock_guard lock(stateMutex_);
  state_ = std::move(state);
  return update;
}

ReaderClient::Pace SharedLibrary::queryPace() const {
  const auto deadline = std::chrono::steady_clock::now() + patience_;
  return [this, deadline] {
    if (stopped_) return ReadPace::stop;
    return std::chrono::steady_clock::now() < deadline ? ReadPace::goOn : ReadPace::hurry;
  };
}

ReaderClient::Pace SharedLibrary::thoroughPace() const {
  return [this] {
    if (stopped_) return ReadPace::stop;
    return watch_.hasChanges() ? ReadPace::windUp : ReadPace::goOn;
  };
}

}  // namespace orvane::host
