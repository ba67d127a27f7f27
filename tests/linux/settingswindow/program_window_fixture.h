#pragma once

#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "../gio/private_bus.h"
#include "fakes/manual_main_actor.h"
#include "linux/settingswindow/form_windows.h"
#include "noted_form.h"

namespace orvane::host {

// A window whose program is the fake one, which does what the form's subtitle says. Time passes
// only when a test lets it; what the program says arrives when it arrives.
class ProgramWindowTest : public testing::Test {
 protected:
  using Seconds = std::chrono::seconds;

  ProgramWindowTest() { makeWindow(ORVANE_FAKE_WINDOW); }
  ~ProgramWindowTest() override { window_.reset(); }

  void makeWindow(const std::string& program) {
    FormWindowsOptions options;
    options.programPath = program;
    options.tell = [this](const std::string& title, const std::string& sentence) {
      told_.push_back(title + ": " + sentence);
    };
    options.drawPreview = [](const FormPreview& preview, double scale) {
      PreviewPicture picture{static_cast<std::uint32_t>(preview.size.width * scale),
                             static_cast<std::uint32_t>(preview.size.height * scale),
                             {}};
      picture.pixels.assign(std::size_t{picture.width} * picture.height * 4, 'x');
      return picture;
    };
    options.takeActivationToken = [this] { return std::exchange(token_, {}); };
    server_ = makeFormWindows(std::move(options), actor_);
    window_ = server_->makeFormWindow({0, 0, 760, 620},
                                      FormWindowStyleMask::titled | FormWindowStyleMask::closable,
                                      NSBackingStoreType::buffered, false);
    window_->title = "Settings";
    window_->isReleasedWhenClosed = false;
    view_ = std::make_shared<fakes::NotedForm>();
    window_->setContentView(view_);
  }

  [[nodiscard]] bool eventually(const std::function<bool()>& condition) {
    return gio::eventually([&] {
      actor_.runUntilIdle();
      return condition();
    });
  }

  // Shows the window as the menu does, and has it do something as soon as it is seen.
  void show(const std::string& order = "") {
    view_->order(order);
    window_->show();
    window_->makeKeyAndOrderFront();
    actor_.runUntilIdle();
  }
  void order(const std::string& what) {
    view_->order(what);
    view_->announce();
    actor_.runUntilIdle();
  }
  // All that the running program was told until now; empty when it does not answer.
  [[nodiscard]] std::string toldToProgram() {
    const auto before = tellings();
    order("tell " + std::to_string(before));  // another form each time
    if (!eventually([&] { return tellings() > before; })) return {};
    return std::get<std::string>(lastTelling()->value);
  }
  // The process of the running program.
  [[nodiscard]] pid_t process() {
    const auto told = toldToProgram();
    constexpr std::string_view kBefore = "process ";
    return told.starts_with(kBefore) ? std::stoi(told.substr(kBefore.size())) : 0;
  }
  // Neither there nor a zombie.
  [[nodiscard]] static bool isGone(pid_t process) { return kill(process, 0) != 0; }
  // Everything that was said is acknowledged.
  [[nodiscard]] bool isAtRest() {
    return eventually([&] { return actor_.pendingTimers() == 0; });
  }
  // Whether the window is known to be hidden, or its program to have ended.
  [[nodiscard]] bool isSeenNoMore() {
    return eventually([&] { return !view_->isFollowed(); });
  }
  [[nodiscard]] bool close() {
    order("close");
    return isSeenNoMore();
  }
  // What is written on standard error meanwhile.
  template <class Act>
  [[nodiscard]] static std::string linesOf(Act act) {
    testing::internal::CaptureStderr();
    act();
    return testing::internal::GetCapturedStderr();
  }

  fakes::ManualMainActor actor_;
  std::unique_ptr<FormWindowServer> server_;
  std::shared_ptr<FormWindow> window_;
  std::shared_ptr<fakes::NotedForm> view_;
  std::vector<std::string> told_;  // to the user
  std::string token_;

 private:
  [[nodiscard]] long tellings() const {
    return std::count_if(view_->edits.begin(), view_->edits.end(),
                         [](const FormEdit& edit) { return edit.key == "told"; });
  }
  [[nodiscard]] std::vector<FormEdit>::const_reverse_iterator lastTelling() const {
    return std::find_if(view_->edits.crbegin(), view_->edits.crend(),
                        [](const FormEdit& edit) { return edit.key == "told"; });
  }
};

}  // namespace orvane::host
