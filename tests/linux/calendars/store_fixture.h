#pragma once

#include <glib.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "calendar_folder.h"
#include "linux/calendars/event_store.h"
#include "linux/calendars/folder_provider.h"
#include "linux/mainloop/main_loop.h"
#include "platform/notification_center.h"

namespace orvane::host {

// The store over a scratch folder, on the real main loop, with the plain reader.
class StoreFixture : public testing::Test {
 protected:
  static constexpr double hour = 3600;
  static constexpr double day = 86400;

  StoreFixture()
      : loop_(makeMainLoop()), today_(day * std::floor(loop_->now().secondsSince1970 / day)) {
    changes_ = center_.addObserver(EKEventStoreChanged, [this] { ++announcements_; });
    options_.roots = {folder_.root().string()};
    options_.readerPath = folder_.reader().string();
    options_.localTimeZone = [this] { return zone_; };
  }
  ~StoreFixture() override {
    store_.reset();
    loop_.reset();
  }

  // A line of the plain format: an hour-long event, `later` than the beginning of today.
  [[nodiscard]] std::string event(const std::string& uid, const std::string& title,
                                  double later = 0) const {
    return "EVENT " + uid + "||" + title + "|" + std::to_string(today_ + later) + "|" +
           std::to_string(today_ + later + hour);
  }

  // Turns the loop until the condition holds; false when it does not within the limit.
  template <class Condition>
  bool runUntil(Condition condition, std::chrono::seconds limit = std::chrono::seconds(20)) {
    bool isLate = false;
    const auto timeout = loop_->after(limit, [&isLate] { isLate = true; });
    while (!condition() && !isLate) g_main_context_iteration(nullptr, TRUE);
    return condition();
  }
  // Turns the loop for so long, for what must not happen in it.
  void runFor(std::chrono::milliseconds time) {
    bool isOver = false;
    const auto timeout = loop_->after(time, [&isOver] { isOver = true; });
    while (!isOver) g_main_context_iteration(nullptr, TRUE);
  }
  template <class Result>
  Result onWorker(std::function<Result()> work) {
    std::optional<Result> result;
    loop_->runOnWorker([&] {
      auto value = work();
      loop_->post([&result, value = std::move(value)]() mutable { result = std::move(value); });
    });
    EXPECT_TRUE(runUntil([&] { return result.has_value(); }));
    return std::move(*result);
  }

  struct Grant {
    bool granted;
    std::optional<EKError> error;
  };
  void open() {
    std::vector<std::unique_ptr<CalendarProvider>> providers;
    providers.push_back(makeFolderProvider(options_, *loop_));
    store_ = makeEventStore({std::move(providers), nullptr}, *loop_, center_);
  }
  Grant request(EKEntityType type) {
    std::optional<Grant> answer;
    const auto completion = [&answer](bool granted, std::optional<EKError> error) {
      EXPECT_FALSE(answer.has_value());
      answer = {granted, std::move(error)};
    };
    if (type == EKEntityType::event) {
      store_->requestFullAccessToEvents(completion);
    } else {
      store_->requestFullAccessToReminders(completion);
    }
    EXPECT_FALSE(answer.has_value()) << "answered before the call returned";
    EXPECT_TRUE(runUntil([&] { return answer.has_value(); }));
    return answer.value_or(Grant{false, std::nullopt});
  }
  void openAndRequest() {
    // Files that are a few milliseconds old are read twice, to be sure.
    runFor(std::chrono::milliseconds(40));
    open();
    request(EKEntityType::event);
    request(EKEntityType::reminder);
    folder_.takeReads();
  }

  std::vector<EKCalendar> calendars(EKEntityType type = EKEntityType::event) {
    return onWorker<std::vector<EKCalendar>>([&] { return *store_->calendars(type); });
  }
  std::vector<std::string> calendarTitles(EKEntityType type = EKEntityType::event) {
    std::vector<std::string> titles;
    for (const auto& calendar : calendars(type)) titles.push_back(calendar.title);
    return titles;
  }
  // Those of the days from `firstDay` on, counted from today.
  std::vector<EKEvent> events(std::optional<std::vector<std::string>> selection = std::nullopt,
                              int firstDay = 0, int days = 7) {
    const Date start{today_ + firstDay * day};
    return onWorker<std::vector<EKEvent>>([&] {
      return store_->events({start, start + days * day, selection});
    });
  }
  std::vector<std::string> eventTitles() {
    std::vector<std::string> titles;
    for (const auto& item : events()) titles.push_back(item.title.value_or("(none)"));
    return titles;
  }
  std::vector<EKReminder> reminders(
      std::optional<std::vector<std::string>> selection = std::nullopt) {
    std::optional<std::vector<EKReminder>> fetched;
    store_->fetchReminders({std::nullopt, std::nullopt, selection}, [&](auto found) {
      loop_->post([&fetched, found = std::move(found)] { fetched = *found; });
    });
    EXPECT_TRUE(runUntil([&] { return fetched.has_value(); }));
    return fetched.value_or(std::vector<EKReminder>());
  }
  EKAuthorizationStatus status(EKEntityType type) { return store_->authorizationStatus(type); }
  bool runUntilAnnounced(int count = 1) {
    return runUntil([&] { return announcements_ >= count; });
  }

  CalendarFolder folder_;
  std::string zone_ = "Europe/Berlin";
  std::unique_ptr<MainLoop> loop_;
  double today_;  // midnight in UTC
  NotificationCenter center_;
  FolderOptions options_;
  std::unique_ptr<EventStore> store_;
  int announcements_ = 0;

 private:
  Subscription changes_;
};

}  // namespace orvane::host
