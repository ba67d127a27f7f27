#pragma once

#include <memory>

#include "agenda/task_manager.h"
#include "dashboard/wallpaper_dashboard_view.h"
#include "fakes/manual_main_actor.h"
#include "fakes/memory_app_service.h"
#include "fakes/memory_event_store.h"
#include "fakes/memory_user_defaults.h"
#include "linux/locale/calendar.h"
#include "linux/locale/locale.h"
#include "platform/notification_center.h"
#include "settings/dashboard_settings.h"

namespace orvane::bench {

// The whole board of somebody with a full week: every card filled, and more items than are shown.
class ExampleBoard {
 public:
  ExampleBoard();

  // 2026-11-20T09:41:00Z, a little before the next deadline.
  static constexpr Date start{1795167660};

  [[nodiscard]] std::shared_ptr<RootView> view() const { return view_; }

 private:
  void fillStore();

  fakes::ManualMainActor actor_{start};
  NotificationCenter notifications_;
  fakes::MemoryUserDefaults defaults_;
  fakes::MemoryAppService appService_;
  std::unique_ptr<host::SystemCalendar> calendar_;
  std::unique_ptr<host::SystemLocale> locale_;
  std::shared_ptr<fakes::MemoryEventStore> store_;
  std::shared_ptr<DashboardSettings> settings_;
  std::shared_ptr<TaskManager> taskManager_;
  std::shared_ptr<RootView> view_;
};

}  // namespace orvane::bench
