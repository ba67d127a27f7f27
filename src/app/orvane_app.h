#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "app/app_delegate.h"
#include "settings/settings_view.h"

namespace orvane {

// The entry: the delegate, made once, and the settings as the program's only scene. There is no
// main window.
class OrvaneApp {
 public:
  explicit OrvaneApp(AppDelegate::Environment environment)
      : appDelegate_(AppDelegate::create(std::move(environment))) {}

  [[nodiscard]] const std::shared_ptr<AppDelegate>& appDelegate() const { return appDelegate_; }

  // The content of the settings scene.
  [[nodiscard]] std::shared_ptr<SettingsView> body() const {
    return appDelegate_->makeSettingsView();
  }

  // Tells the delegate of the launch, runs the loop until the program is asked to end, and tells
  // the delegate of that.
  int main(const std::function<void()>& runLoop) const {
    appDelegate_->applicationDidFinishLaunching();
    runLoop();
    appDelegate_->applicationWillTerminate();
    return 0;
  }

 private:
  const std::shared_ptr<AppDelegate> appDelegate_;
};

}  // namespace orvane
