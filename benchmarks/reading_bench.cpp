#include "reading_bench.h"

#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <functional>
#include <memory>
#include <utility>

#include "agenda/store_queries.h"
#include "calendar_folders.h"
#include "linux/calendars/event_store.h"
#include "linux/calendars/folder_provider.h"
#include "linux/locale/calendar.h"
#include "linux/locale/locale.h"
#include "linux/mainloop/main_loop.h"

namespace orvane::bench {
namespace {

double cpuSeconds() {
  double total = 0;
  for (const int who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
    rusage usage{};
    getrusage(who, &usage);
    for (const auto& time : {usage.ru_utime, usage.ru_stime}) {
      total += static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    }
  }
  return total;
}

// How long the calling thread has waited for a processor that others had, in seconds since it
// began.
double secondsInQueue() {
  std::ifstream file("/proc/thread-self/schedstat");
  double running = 0, waiting = 0;
  file >> running >> waiting;
  return waiting / 1e9;
}

// Looks once a millisecond how long the main thread has not come round. Waiting for a processor
// while other programs have them all is not the main thread's doing and does not count.
class LoopWatch {
 public:
  explicit LoopWatch(MainActor& actor) : actor_(actor) { wait(); }
  [[nodiscard]] double longestBlock() const { return longest_; }

 private:
  static constexpr double kPeriod = 0.001;
  void wait() {
    const Date begun = actor_.now();
    const double queued = secondsInQueue();
    timer_ = actor_.after(std::chrono::milliseconds(1), [this, begun, queued] {
      const double ownQueue = secondsInQueue() - queued;
      longest_ = std::max(longest_, actor_.now() - begun - kPeriod - ownQueue);
      wait();
    });
  }
  MainActor& actor_;
  double longest_ = 0;
  Subscription timer_;
};

// A program that shows these folders, as far as reading them goes.
class ReadingProgram {
 public:
  explicit ReadingProgram(const CalendarFolders& folders) {
    host::Region region;
    region.timeZone = "Europe/Berlin";
    region.locale = "en_US";
    region.now = [] { return CalendarFolders::now; };
    calendar_ = host::makeCalendar(region);
    locale_ = host::makeLocale(region);
    loop_ = host::makeMainLoop();
    watch_ = std::make_unique<LoopWatch>(*loop_);
    host::FolderOptions options;
    options.roots = {folders.root()};
    options.readerPath = ORVANE_READER;
    options.localTimeZone = [] { return "Europe/Berlin"; };
    host::EventStoreOptions store;
    store.providers.push_back(host::makeFolderProvider(std::move(options), *loop_));
    store.instantOf = [this](const DateComponents& due) { return calendar_->date(due); };
    store_ = host::makeEventStore(std::move(store), *loop_, notifications_);
    changed_ = notifications_.addObserver(EKEventStoreChanged, [this] {
      if (onChange_) onChange_();
    });
  }

  // Asks for access, which is answered when everything was looked at once.
  void start() {
    store_->requestFullAccessToEvents([this](bool, const std::optional<EKError>&) { endTurn(); });
    runTurn();
  }
  // Fetches, sorts and converts all that a board shows.
  void refresh() {
    loop_->runOnWorker([this] {
      const auto window = eventWindow(*calendar_, CalendarFolders::now);
      const auto listing = listCalendars(*store_, EKEntityType::event, *locale_);
      events_ = relevantEvents(*store_, {window->start, window->end, listing.identifiers},
                               *calendar_, CalendarFolders::now)
                    .size();
      endTurn();
    });
    runTurn();
    store_->fetchReminders({}, [this](std::optional<std::vector<EKReminder>> reminders) {
      reminders_ = openReminders(std::move(*reminders), *calendar_, *locale_).size();
      endTurn();
    });
    runTurn();
  }
  void waitForChange(const std::function<void()>& cause) {
    onChange_ = [this] { endTurn(); };
    cause();
    runTurn();
    onChange_ = nullptr;
  }

  [[nodiscard]] std::size_t events() const { return events_; }
  [[nodiscard]] std::size_t reminders() const { return reminders_; }
  [[nodiscard]] double longestBlock() const { return watch_->longestBlock(); }

 private:
  void runTurn() { loop_->run(); }
  // Any thread.
  void endTurn() {
    loop_->post([this] { loop_->quit(0); });
  }

  std::unique_ptr<host::SystemCalendar> calendar_;
  std::unique_ptr<host::SystemLocale> locale_;
  NotificationCenter notifications_;
  std::unique_ptr<host::MainLoop> loop_;
  std::unique_ptr<LoopWatch> watch_;
  std::shared_ptr<host::EventStore> store_;
  Subscription changed_;
  std::function<void()> onChange_;
  std::size_t events_ = 0;
  std::size_t reminders_ = 0;
};

void coldRead(benchmark::State& state, const CalendarFolders& folders) {
  double cpu = 0, longestBlock = 0;
  std::size_t shown = 0;
  for (auto _ : state) {
    const double before = cpuSeconds();
    ReadingProgram program(folders);
    program.start();
    program.refresh();
    longestBlock = std::max(longestBlock, program.longestBlock());
    shown = program.events() + program.reminders();
    cpu += cpuSeconds() - before;
  }
  if (shown == 0) state.SkipWithError("nothing was read");
  state.counters["shown"] = static_cast<double>(shown);
  state.counters["cpuMs"] = benchmark::Counter(cpu * 1e3, benchmark::Counter::kAvgIterations);
  state.counters["mainBlockedMs"] = longestBlock * 1e3;
}

// The time counts from the announcement of the change, which waits on purpose until the burst is
// over; the processor time counts from the change itself.
void refreshAfterOneChange(benchmark::State& state, CalendarFolders& folders) {
  ReadingProgram program(folders);
  program.start();
  program.refresh();
  double cpu = 0;
  for (auto _ : state) {
    const double before = cpuSeconds();
    program.waitForChange([&] { folders.changeOne(); });
    const auto begin = std::chrono::steady_clock::now();
    program.refresh();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    state.SetIterationTime(taken.count());
    cpu += cpuSeconds() - before;
  }
  if (program.events() == 0) state.SkipWithError("nothing was read");
  state.counters["cpuMs"] = benchmark::Counter(cpu * 1e3, benchmark::Counter::kAvgIterations);
  state.counters["mainBlockedMs"] = program.longestBlock() * 1e3;
}

}  // namespace

void registerReading(const std::function<CalendarFolders&()>& folders) {
  benchmark::RegisterBenchmark("coldRead",
                               [=](benchmark::State& state) { coldRead(state, folders()); })
      ->Unit(benchmark::kMillisecond)
      ->UseRealTime()
      ->Iterations(5);
  benchmark::RegisterBenchmark(
      "refreshAfterOneChange",
      [=](benchmark::State& state) { refreshAfterOneChange(state, folders()); })
      ->Unit(benchmark::kMillisecond)
      ->UseManualTime()
      ->Iterations(20);
}

}  // namespace orvane::bench
