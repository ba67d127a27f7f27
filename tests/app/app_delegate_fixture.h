#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "app/app_delegate.h"
#include "dashboard/wallpaper_dashboard_view.h"
#include "fakes/fixed_calendar.h"
#include "fakes/manual_main_actor.h"
#include "fakes/memory_app_service.h"
#include "fakes/memory_apple_scripts.h"
#include "fakes/memory_application.h"
#include "fakes/memory_event_store.h"
#include "fakes/memory_form_windows.h"
#include "fakes/memory_hot_keys.h"
#include "fakes/memory_status_bar.h"
#include "fakes/memory_user_defaults.h"
#include "fakes/memory_window_server.h"
#include "fakes/plain_locale.h"

namespace orvane {

using Operations = std::vector<std::string>;

// A delegate in a world of memory, with one screen attached.
class AppDelegateFixture : public testing::Test {
 protected:
  void SetUp() override { server_.attach("left", {0, 0, 1920, 1080}, 11); }

  AppDelegate& delegate() {
    if (!delegate_) delegate_ = AppDelegate::create(environment());
    return *delegate_;
  }
  void launch() { delegate().applicationDidFinishLaunching(); }
  // How often the windows were placed: each run ends by ordering the one window back.
  [[nodiscard]] long placements() const {
    return std::count(server_.operations.begin(), server_.operations.end(),
                      "window 1: frame, display");
  }

  AppDelegate::Environment environment() { return environment(actor_); }
  AppDelegate::Environment environment(MainActor& actor) {
    return {&application_,
            statusBar_,
            formWindows_,
            hotKeys_,
            scripts_,
            defaults_,
            service_,
            server_,
            center_,
            actor,
            calendar_,
            locale_,
            [this] {
              server_.operations.emplace_back("store made");
              return store_;
            }};
  }
  // What the window shows.
  WallpaperDashboardView& board(int window) {
    const auto& root = server_.window(window)->contentView()->rootView;
    return dynamic_cast<WallpaperDashboardView&>(*root);
  }

  fakes::ManualMainActor actor_;
  NotificationCenter center_;
  fakes::FixedCalendar calendar_{[this] { return actor_.now(); }};
  fakes::PlainLocale locale_;
  fakes::MemoryUserDefaults defaults_;
  fakes::MemoryAppService service_;
  fakes::MemoryWindowServer server_;
  // All neighbours write down what is done to them in one list, so that the order can be read.
  fakes::MemoryApplication application_{server_.operations};
  fakes::MemoryStatusBar statusBar_{server_.operations};
  fakes::MemoryFormWindowServer formWindows_{server_.operations};
  fakes::MemoryHotKeys hotKeys_{server_.operations};
  fakes::MemoryAppleScripts scripts_{server_.operations};
  std::shared_ptr<fakes::MemoryEventStore> store_ =
      std::make_shared<fakes::MemoryEventStore>(actor_);
  std::shared_ptr<AppDelegate> delegate_;
};

}  // namespace orvane
