#pragma once

#include <memory>
#include <string>
#include <vector>

#include "fakes/fixed_calendar.h"
#include "fakes/manual_main_actor.h"
#include "fakes/memory_app_service.h"
#include "fakes/memory_event_store.h"
#include "fakes/memory_user_defaults.h"
#include "fakes/memory_window_server.h"
#include "fakes/plain_locale.h"
#include "settings/settings_view.h"

namespace orvane {

// The real form of the settings over settings in memory, with two displays attached.
class SettingsInMemory {
 public:
  SettingsInMemory() {
    server_.attach("Built-in display", {0, 0, 1920, 1080}, 11);
    server_.attach("Studio display", {1920, 0, 2560, 1440}, 12);
    settings = std::make_shared<DashboardSettings>(defaults_, service_);
    manager = TaskManager::create(settings, store_, {actor_, center_, calendar_, locale_});
    view = SettingsView::create(settings, manager, {server_, center_, actor_, locale_});
  }
  SettingsInMemory(const SettingsInMemory&) = delete;

  void offer(const std::vector<std::string>& calendars, const std::vector<std::string>& lists) {
    manager->calendarOptions = options(calendars, EKEntityType::event);
    manager->reminderListOptions = options(lists, EKEntityType::reminder);
  }

 private:
  static std::vector<EventKitSourceOption> options(const std::vector<std::string>& titles,
                                                   EKEntityType type) {
    std::vector<EventKitSourceOption> options;
    for (const auto& title : titles) {
      options.push_back({"id-" + std::to_string(options.size()), title, type});
    }
    return options;
  }

  fakes::ManualMainActor actor_{{1'795'167'660}};  // Friday, November 20, 2026, 9:41 AM
  NotificationCenter center_;
  fakes::FixedCalendar calendar_{[this] { return actor_.now(); }};
  fakes::PlainLocale locale_;
  fakes::MemoryUserDefaults defaults_;
  fakes::MemoryAppService service_;
  fakes::MemoryWindowServer server_;
  std::shared_ptr<fakes::MemoryEventStore> store_ =
      std::make_shared<fakes::MemoryEventStore>(actor_);

 public:
  std::shared_ptr<DashboardSettings> settings;
  std::shared_ptr<TaskManager> manager;
  std::shared_ptr<SettingsView> view;
};

}  // namespace orvane
