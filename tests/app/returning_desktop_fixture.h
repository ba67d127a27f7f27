#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/returning_desktop.h"
#include "fakes/blank_view.h"
#include "fakes/manual_main_actor.h"
#include "fakes/memory_window_server.h"

namespace orvane {

// Desktops that come and go: each opening makes a new one with the screens of the time.
class ReturningDesktopTest : public testing::Test {
 protected:
  static constexpr Rect kFrame{0, 0, 1920, 1080};

  struct Screen {
    std::string identity;
    Rect frame;
    std::int64_t number;
  };

  ReturningDesktop::Opened openNext(const ReturningDesktop::Attempt& attempt) {
    ++openings_;
    isInVain_ = attempt.isInVain;
    if (hangsUp_) attempt.onLost({"The display hung up", true});
    if (!isThere_) return {nullptr, {"There is none.", "Nor is there another."}};
    auto server = std::make_unique<fakes::MemoryWindowServer>();
    for (const auto& screen : screens_) {
      server->attach(screen.identity, screen.frame, screen.number);
    }
    server->levels[CGWindowLevelKey::desktopWindow] = level_;
    current_ = server.get();
    lose_ = attempt.onLost;
    return {std::move(server), {}};
  }
  void open() { ASSERT_THAT(desktop_.open(std::chrono::seconds(5)), testing::SizeIs(0)); }
  void lose(bool isRefusal = false) {
    current_ = nullptr;
    isThere_ = false;
    lose_({"The display is lost", isRefusal});
    actor_.runUntilIdle();
  }
  void comeBack() {
    isThere_ = true;
    actor_.advance(std::chrono::seconds(4));
    ASSERT_NE(current_, nullptr);
  }
  std::shared_ptr<NSWindow> makeWindow(Rect frame = kFrame) {
    auto window = desktop_.makeWindow(frame, NSWindowStyleMask::fullSizeContentView,
                                      NSBackingStoreType::buffered, false);
    window->setContentView(std::make_unique<NSHostingView>(std::make_shared<fakes::BlankView>()));
    return window;
  }

  fakes::ManualMainActor actor_;
  NotificationCenter center_;
  std::vector<Screen> screens_ = {{"left", kFrame, 11}};
  std::int32_t level_ = -100;
  bool isThere_ = true;
  bool hangsUp_ = false;  // while it is opened
  int openings_ = 0;
  fakes::MemoryWindowServer* current_ = nullptr;
  std::function<void(const DesktopLoss&)> lose_;
  std::function<bool()> isInVain_;
  bool sessionEnded_ = false;
  std::vector<std::string> said_;
  ReturningDesktop desktop_{
      {actor_, center_, [this](const auto& attempt) { return openNext(attempt); },
       [this] { return sessionEnded_; }, [this](const auto& why) { said_.push_back(why); }}};
};

}  // namespace orvane
