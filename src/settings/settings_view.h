#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "agenda/task_manager.h"
#include "foundation/color.h"
#include "foundation/main_actor.h"
#include "foundation/subject.h"
#include "foundation/subscription.h"
#include "platform/form_window.h"
#include "platform/locale.h"
#include "platform/notification_center.h"
#include "platform/ns_window.h"
#include "settings/dashboard_settings.h"

namespace orvane {

// The settings window's content: edits the settings, and offers the calendars, lists and displays
// that there are. Every edit lands in the settings at once; of its own the view has only the tab
// that is shown and the colour that is being picked. Main thread only.
class SettingsView final : public FormView, public std::enable_shared_from_this<SettingsView> {
 public:
  // All of it must outlive the view and the loop's tasks.
  struct Environment {
    const WindowServer& windowServer;
    NotificationCenter& notificationCenter;
    MainActor& mainActor;
    const Locale& locale;
  };

  [[nodiscard]] static std::shared_ptr<SettingsView> create(
      std::shared_ptr<DashboardSettings> settings, std::shared_ptr<TaskManager> taskManager,
      Environment environment);

  [[nodiscard]] Form form() const override;
  void edit(const FormEdit& edit) override;
  [[nodiscard]] Subscription onChange(std::function<void()> observer) override;

  [[nodiscard]] const std::shared_ptr<DashboardSettings>& settings() const { return settings_; }
  [[nodiscard]] const std::shared_ptr<TaskManager>& taskManager() const { return taskManager_; }
  // The tag of the tab that is shown.
  [[nodiscard]] const std::string& selectedTab() const { return selectedTab_; }
  // The colour as it was picked, finer than it is stored; that of the board once the settings hold
  // another one.
  [[nodiscard]] Color workingColor() const;

 private:
  static constexpr const char* calendarsKey = "selectedCalendarIDs";
  static constexpr const char* listsKey = "selectedReminderListIDs";

  // What tells one list of sources from the other.
  struct SourceListTexts {
    std::string key;
    std::string title;
    std::string emptyText;
  };

  SettingsView(std::shared_ptr<DashboardSettings> settings,
               std::shared_ptr<TaskManager> taskManager, Environment environment);

  [[nodiscard]] FormTab sourcesTab() const;
  [[nodiscard]] FormTab displayTab() const;
  [[nodiscard]] FormTab smartNextTab() const;
  [[nodiscard]] FormTab styleTab() const;
  [[nodiscard]] static FormControl sourceList(SourceListTexts texts,
                                              const std::vector<EventKitSourceOption>& options,
                                              const TextSet& selectedIDs);
  [[nodiscard]] FormControl selectedDisplayPicker() const;

  [[nodiscard]] bool offers(const FormEdit& edit) const;
  void apply(const FormEdit& edit);
  void selectSource(std::string_view rowKey, bool isOn);
  void clearSources(std::string_view buttonKey);
  void setWorkingColor(const Color& color);

  void followChanges();
  void announceLater();

  const std::shared_ptr<DashboardSettings> settings_;
  const std::shared_ptr<TaskManager> taskManager_;
  const Environment environment_;
  std::string selectedTab_ = "sources";
  Color workingColor_;
  bool announcementPending_ = false;
  Subject<> changed_;
  std::vector<Subscription> cancellables_;
};

}  // namespace orvane
