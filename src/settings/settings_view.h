#pragma once

#include <memory>
#include <utility>

#include "agenda/task_manager.h"
#include "platform/form_window.h"
#include "settings/dashboard_settings.h"

namespace orvane {

// The settings window's content: edits the settings, and offers the calendars and lists that the
// task manager knows. Main thread only.
class SettingsView final : public FormView {
 public:
  SettingsView(std::shared_ptr<DashboardSettings> settings,
               std::shared_ptr<TaskManager> taskManager)
      : settings_(std::move(settings)), taskManager_(std::move(taskManager)) {}

  [[nodiscard]] const std::shared_ptr<DashboardSettings>& settings() const { return settings_; }
  [[nodiscard]] const std::shared_ptr<TaskManager>& taskManager() const { return taskManager_; }

 private:
  std::shared_ptr<DashboardSettings> settings_;
  std::shared_ptr<TaskManager> taskManager_;
};

}  // namespace orvane
