#include "agenda/task_manager.h"

#include <chrono>
#include <utility>

#include "agenda/day_boundary.h"
#include "foundation/task_waiting.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;

// The store may announce several changes for one edit, and a dragged slider changes a setting
// many times: a refresh comes when a burst is over.
constexpr Duration storeQuiet = 1s;
constexpr Duration settingsQuiet = 250ms;
constexpr Duration refreshDelay = 250ms;

}  // namespace

std::shared_ptr<TaskManager> TaskManager::create(std::shared_ptr<DashboardSettings> settings,
                                                 std::shared_ptr<EKEventStore> eventStore,
                                                 Environment environment) {
  std::shared_ptr<TaskManager> manager(
      new TaskManager(std::move(settings), std::move(eventStore), environment));
  manager->subscribeToChanges();
  return manager;
}

TaskManager::TaskManager(std::shared_ptr<DashboardSettings> settings,
                         std::shared_ptr<EKEventStore> eventStore, Environment environment)
    : eventStore_(std::move(eventStore)),
      settings_(std::move(settings)),
      environment_(environment) {}

TaskManager::~TaskManager() {
  refreshTask_.cancel();
  dayBoundaryTask_.cancel();
}

void TaskManager::subscribeToChanges() {
  const auto refreshSoon = [weak = weak_from_this()] {
    if (const Self self = weak.lock()) self->scheduleRefresh();
  };
  auto storeBurst = std::make_shared<Debounce>(environment_.mainActor, storeQuiet, refreshSoon);
  cancellables_.push_back(environment_.notificationCenter.addObserver(
      EKEventStoreChanged, [storeBurst] { storeBurst->signal(); }));
  // Any setting: the selections, the ignored words and the countdown's sources all decide what is
  // published.
  auto settingsBurst =
      std::make_shared<Debounce>(environment_.mainActor, settingsQuiet, refreshSoon);
  cancellables_.push_back(
      settings_->objectWillChange().subscribe([settingsBurst] { settingsBurst->signal(); }));
}

void TaskManager::start() {
  refreshTask_.cancel();
  refreshTask_ = spawn(environment_.mainActor, firstRefresh(weak_from_this()));
  scheduleRefreshAtNextDay();
}

Task<void> TaskManager::firstRefresh(WeakSelf weak) {
  if (const Self self = weak.lock()) co_await self->requestAccessAndRefresh();
}

void TaskManager::scheduleRefresh() {
  refreshTask_.cancel();
  refreshTask_ = spawn(environment_.mainActor, delayedRefresh(weak_from_this(), environment_));
}

Task<void> TaskManager::delayedRefresh(WeakSelf weak, Environment environment) {
  co_await sleepFor(environment.mainActor, refreshDelay);
  if (co_await isCancelled()) co_return;
  const Self self = weak.lock();
  if (!self) co_return;
  co_await self->refreshData();
}

void TaskManager::scheduleRefreshAtNextDay() {
  dayBoundaryTask_.cancel();
  dayBoundaryTask_ = spawn(environment_.mainActor, refreshEachDay(weak_from_this(), environment_));
}

Task<void> TaskManager::refreshEachDay(WeakSelf weak, Environment environment) {
  MainActor& actor = environment.mainActor;
  while (!co_await isCancelled()) {
    co_await sleepFor(actor, delayUntilNextDay(environment.calendar, actor.now()));
    if (co_await isCancelled()) co_return;
    if (const Self self = weak.lock()) co_await self->refreshData();
  }
}

}  // namespace orvane
