#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "fakes/manual_main_actor.h"
#include "linux/calendars/account_provider.h"
#include "memory_accounts.h"

namespace orvane::host {

inline constexpr double hour = 3600;
inline constexpr double day = 86400;
inline constexpr double now = 1'795'000'000;
inline constexpr auto event = EKEntityType::event;
inline constexpr auto reminder = EKEntityType::reminder;

// Understands "name" as an event of the present, "name@hours" as one of later, "-name" as a task,
// "zone" as an event titled with the zone, "dense" as one of the shown part of the window only, and
// no text at all where it is "bad".
inline std::optional<TextContent> contentOfPlain(const std::string& text, const ReadWindow& window,
                                                 const ShownSpan& shown) {
  wire::FileAnswer answer;
  if (text == "bad") answer.outcome = wire::ReadOutcome::notCalendar;
  std::stringstream words(text);
  for (std::string word; words >> word;) {
    answer.holdsEvents = answer.holdsEvents || word.front() != '-';
    answer.holdsTasks = answer.holdsTasks || word.front() == '-';
    const auto at = word.find('@');
    const double later = at == std::string::npos ? 0 : std::stod(word.substr(at + 1));
    const auto name = word.substr(0, at);
    if (word.front() == '-') {
      answer.tasks.push_back({name.substr(1), name.substr(1), std::nullopt, 0});
    } else if (word == "zone") {
      answer.events.push_back({name, "", window.localTimeZone, now, now + hour, false});
    } else if (word == "dense") {
      answer.isForShownOnly = true;
      answer.events.push_back({name, "", name, shown.start, shown.start + hour, false});
    } else if (now + later * hour < window.end) {
      answer.events.push_back(
          {name, "", name, now + later * hour, now + (later + 1) * hour, false});
    }
  }
  return contentOf(answer);
}

class AccountProviderTest : public testing::Test {
 protected:
  AccountProviderTest() {
    options.localTimeZone = [this] { return zone; };
    options.readText = [this](const std::string& text, const ReadWindow& window,
                              const ShownSpan& shown, const TextReading::Done& done) {
      ++reads;
      actor.post([this, text, window, shown, done] {
        const auto content = isReaderBroken ? std::nullopt : contentOfPlain(text, window, shown);
        done(content ? &*content : nullptr,
             isReaderBroken ? TextFailure::program : TextFailure::text);
      });
    };
  }
  ~AccountProviderTest() override {
    if (provider) provider->stop();
  }

  // Made, started, and told that there is such a service, or that there is none.
  void open(bool isThere = true) {
    auto made = std::make_unique<MemoryAccounts>(world);
    accounts = made.get();
    provider = makeAccountProvider(options, std::move(made), actor);
    provider->start([this] { ++readies; }, [this] { ++changes; });
    actor.runUntilIdle();
    ASSERT_TRUE(world->found);
    world->found(isThere ? accounts->service() : nullptr);
    actor.runUntilIdle();
  }

  std::vector<std::string> titles(double from = 0, double to = 7 * day) {
    std::vector<std::string> titles;
    for (const auto& item : events(from, to)) titles.push_back(item.title.value_or("(none)"));
    return titles;
  }
  std::vector<EKEvent> events(double from = 0, double to = 7 * day) {
    return provider->events(Date{now + from}, Date{now + to}, std::nullopt);
  }
  std::vector<std::string> tasks() {
    std::vector<std::string> titles;
    for (const auto& item : provider->openReminders(std::nullopt)) titles.push_back(*item.title);
    return titles;
  }
  std::vector<std::string> calendarTitles(EKEntityType type = event) {
    std::vector<std::string> titles;
    for (const auto& calendar : provider->calendars(type)) titles.push_back(calendar.title);
    return titles;
  }
  void takeCounts() { changes = reads = 0; }

  fakes::ManualMainActor actor{Date{now}};
  std::shared_ptr<AccountWorld> world = std::make_shared<AccountWorld>(actor);
  MemoryAccounts* accounts = nullptr;
  AccountOptions options;
  std::string zone = "Europe/Berlin";
  bool isReaderBroken = false;
  std::unique_ptr<CalendarProvider> provider;
  int readies = 0;
  int changes = 0;
  int reads = 0;
};

}  // namespace orvane::host
