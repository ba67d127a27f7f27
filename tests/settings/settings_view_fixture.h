#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "fakes/fixed_calendar.h"
#include "fakes/form_text.h"
#include "fakes/manual_main_actor.h"
#include "fakes/memory_app_service.h"
#include "fakes/memory_event_store.h"
#include "fakes/memory_user_defaults.h"
#include "fakes/memory_window_server.h"
#include "fakes/plain_locale.h"
#include "settings/settings_view.h"

namespace orvane {

// The settings' form over settings in memory, with one display attached.
class SettingsViewFixture : public testing::Test {
 protected:
  void SetUp() override { server_.attach("left", {0, 0, 1920, 1080}, 11); }

  // Made when first needed, so that a test may store something or change the world before.
  SettingsView& view() {
    if (!view_) {
      view_ = SettingsView::create(settings(), manager(), {server_, center_, actor_, locale_});
    }
    return *view_;
  }
  std::shared_ptr<DashboardSettings> settings() {
    if (!settings_) settings_ = std::make_shared<DashboardSettings>(defaults_, service_);
    return settings_;
  }
  std::shared_ptr<TaskManager> manager() {
    if (!manager_) {
      manager_ = TaskManager::create(settings(), store_, {actor_, center_, calendar_, locale_});
    }
    return manager_;
  }
  void offerCalendars(std::vector<EventKitSourceOption> options) {
    manager()->calendarOptions = std::move(options);
  }
  void edit(const std::string& key, FormValue value = {}) { view().edit({key, std::move(value)}); }

  FormTab tab(std::size_t index) { return view().form().tabs.at(index); }
  // The first control with this key; fails the test when there is none.
  FormControl control(const std::string& key) {
    const Form form = view().form();
    const auto* found =
        findControl(form, [&](const FormControl& control) { return control.key == key; });
    if (found) return *found;
    ADD_FAILURE() << "no control " << key;
    return {};
  }
  template <class Content>
  Content contentOf(const std::string& key) {
    return std::get<Content>(control(key).content);
  }
  FormSourceList calendars() { return contentOf<FormSourceList>("selectedCalendarIDs"); }

  fakes::ManualMainActor actor_{{1'795'167'660}};  // Friday, November 20, 2026, 9:41 AM
  NotificationCenter center_;
  fakes::FixedCalendar calendar_{[this] { return actor_.now(); }};
  fakes::PlainLocale locale_;
  fakes::MemoryUserDefaults defaults_;
  fakes::MemoryAppService service_;
  fakes::MemoryWindowServer server_;
  std::shared_ptr<fakes::MemoryEventStore> store_ =
      std::make_shared<fakes::MemoryEventStore>(actor_);
  std::shared_ptr<DashboardSettings> settings_;
  std::shared_ptr<TaskManager> manager_;
  std::shared_ptr<SettingsView> view_;
};

}  // namespace orvane
