#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "agenda/task_manager.h"
#include "fakes/fixed_calendar.h"
#include "fakes/manual_main_actor.h"
#include "fakes/memory_app_service.h"
#include "fakes/memory_event_store.h"
#include "fakes/memory_user_defaults.h"
#include "fakes/plain_locale.h"

namespace orvane {

using namespace std::chrono_literals;

// A task manager over a store in memory, at noon of 20 November 2026.
class TaskManagerTest : public testing::Test {
 protected:
  static Date at(int day, int hour, int minute = 0, int second = 0) {
    return {fakes::secondsOf({2026, 11, day, hour, minute, second})};
  }

  static std::shared_ptr<const EKCalendar> calendar(const std::string& id) {
    return std::make_shared<EKCalendar>(EKCalendar{id, "Calendar " + id});
  }
  void addEvent(const std::string& id, Date start, const std::string& calendarId = "work") {
    EKEvent event;
    event.eventIdentifier = id;
    event.calendarItemIdentifier = "item-" + id;
    event.title = "Event " + id;
    event.calendar = calendar(calendarId);
    event.startDate = start;
    event.endDate = start + 3600;
    store_->storedEvents.push_back(event);
  }
  void addReminder(const std::string& id, const std::string& listId = "home") {
    EKReminder reminder;
    reminder.calendarItemIdentifier = id;
    reminder.title = "Reminder " + id;
    reminder.calendar = calendar(listId);
    store_->storedReminders.push_back(reminder);
  }
  static void dueAt(EKReminder& reminder, const fakes::CivilTime& time) {
    reminder.dueDateComponents =
        DateComponents{"gregorian", std::nullopt, time.year,   time.month,
                       time.day,    time.hour,    time.minute, time.second};
  }

  std::shared_ptr<TaskManager> makeManager() {
    return TaskManager::create(settings_, store_, {actor_, center_, calendar_, locale_});
  }
  // Made once, when a test first needs it.
  TaskManager& manager() {
    if (!manager_) manager_ = makeManager();
    return *manager_;
  }
  void refresh() {
    spawn(actor_, manager().refreshData());
    actor_.runUntilIdle();
  }
  // Every refresh that may read asks the store for its calendars of events or its lists first.
  [[nodiscard]] long refreshes() const { return store_->countOf("calendars events"); }
  [[nodiscard]] std::string eventIds() {
    std::string ids;
    for (const auto& event : *manager().events) ids += event.id + " ";
    return ids;
  }
  [[nodiscard]] std::string reminderIds() {
    std::string ids;
    for (const auto& reminder : *manager().reminders) ids += reminder.id + " ";
    return ids;
  }

  fakes::ManualMainActor actor_{at(20, 12)};
  NotificationCenter center_;
  fakes::FixedCalendar calendar_{[this] { return actor_.now(); }};
  fakes::PlainLocale locale_;
  fakes::MemoryUserDefaults defaults_;
  fakes::MemoryAppService service_;
  std::shared_ptr<DashboardSettings> settings_ =
      std::make_shared<DashboardSettings>(defaults_, service_);
  std::shared_ptr<fakes::MemoryEventStore> store_ =
      std::make_shared<fakes::MemoryEventStore>(actor_);
  std::shared_ptr<TaskManager> manager_;
};

}  // namespace orvane
