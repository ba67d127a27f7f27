#include "example_board.h"

#include <stdexcept>
#include <string>
#include <utility>

namespace orvane::bench {
namespace {

host::Region pinnedRegion() {
  host::Region region;
  region.timeZone = "Europe/Berlin";
  region.locale = "en_US";
  region.now = [] { return ExampleBoard::start; };
  return region;
}

EKEvent event(int number, double startsIn, std::shared_ptr<const EKCalendar> calendar) {
  EKEvent result;
  result.eventIdentifier = "event-" + std::to_string(number);
  result.calendarItemIdentifier = "item-" + std::to_string(number);
  result.title = "Planning the launch of release " + std::to_string(number);
  result.calendar = std::move(calendar);
  result.startDate = ExampleBoard::start + startsIn;
  result.endDate = *result.startDate + 1800;
  return result;
}

EKReminder reminder(int number, std::shared_ptr<const EKCalendar> list) {
  EKReminder result;
  result.calendarItemIdentifier = "reminder-" + std::to_string(number);
  result.title = "Return the library book number " + std::to_string(number);
  result.calendar = std::move(list);
  result.priority = number % 10;
  if (number % 3 != 0) {
    DateComponents due;
    due.calendar = "gregorian";
    due.year = 2026, due.month = 11, due.day = 21 + number % 8, due.hour = 9, due.minute = 30;
    result.dueDateComponents = due;
  }
  return result;
}

}  // namespace

ExampleBoard::ExampleBoard()
    : calendar_(host::makeCalendar(pinnedRegion())),
      locale_(host::makeLocale(pinnedRegion())),
      store_(std::make_shared<fakes::MemoryEventStore>(actor_)),
      settings_(std::make_shared<DashboardSettings>(defaults_, appService_)) {
  fillStore();
  taskManager_ =
      TaskManager::create(settings_, store_, {actor_, notifications_, *calendar_, *locale_});
  taskManager_->start();
  actor_.runUntilIdle();
  if (taskManager_->events->empty() || taskManager_->reminders->empty()) {
    throw std::runtime_error("the example board is empty");
  }
  view_ = std::make_shared<WallpaperDashboardView>(
      taskManager_, settings_,
      DashboardEnvironment{*locale_, *calendar_, [] { return ExampleBoard::start; }});
}

void ExampleBoard::fillStore() {
  const auto work = std::make_shared<EKCalendar>(EKCalendar{"work", "Work"});
  const auto home = std::make_shared<EKCalendar>(EKCalendar{"home", "Home"});
  const auto chores = std::make_shared<EKCalendar>(EKCalendar{"chores", "Chores"});
  store_->eventCalendars = {*work, *home};
  store_->reminderLists = {*chores};
  for (int i = 0; i < 10; ++i) {
    store_->storedEvents.push_back(event(i, i * 4000 - 3000, i % 2 == 0 ? work : home));
  }
  for (int i = 10; i < 40; ++i) {
    store_->storedEvents.push_back(event(i, (i - 9) * 14000 + 60000, i % 2 == 0 ? work : home));
  }
  store_->storedEvents[1].isAllDay = true;
  for (int i = 0; i < 20; ++i) store_->storedReminders.push_back(reminder(i, chores));
}

}  // namespace orvane::bench
