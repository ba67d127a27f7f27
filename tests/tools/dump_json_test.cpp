#include "dump_json.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "fakes/cell_measurer.h"
#include "fakes/fixed_calendar.h"
#include "fakes/manual_main_actor.h"
#include "fakes/memory_app_service.h"
#include "fakes/memory_event_store.h"
#include "fakes/memory_user_defaults.h"
#include "fakes/plain_locale.h"

namespace orvane {
namespace {

using nlohmann::json;

class DumpJSONTest : public testing::Test {
 protected:
  const Date now{1000};
  fakes::ManualMainActor actor{now};
  NotificationCenter center;
  fakes::FixedCalendar calendar{[this] { return now; }};
  fakes::PlainLocale locale;
  fakes::MemoryUserDefaults defaults;
  fakes::MemoryAppService service;
  std::shared_ptr<TaskManager> agenda = TaskManager::create(
      std::make_shared<DashboardSettings>(defaults, service),
      std::make_shared<fakes::MemoryEventStore>(actor), {actor, center, calendar, locale});

  [[nodiscard]] json dumped(const View& view = View()) const {
    return dumpOf(now, *agenda, layout(view, {100, 50}, fakes::CellMeasurer()));
  }
  static json rect(double x, double y, double width, double height) {
    return json{{"x", x}, {"y", y}, {"width", width}, {"height", height}};
  }
};

TEST_F(DumpJSONTest, AnEmptyAgenda) {
  const json dump = dumped();
  EXPECT_EQ(dump["now"], 1000);
  for (const char* list :
       {"events", "reminders", "calendarOptions", "reminderListOptions", "display"}) {
    EXPECT_EQ(dump.at(list), json::array()) << list;
  }
  EXPECT_TRUE(dump.at("nextDeadline").is_null());
  EXPECT_EQ(dump.at("frames"), json::object());
  EXPECT_EQ(dump.at("calendarAuthorizationState"), "unknown");
}

TEST_F(DumpJSONTest, RecordsWithAllTheirFields) {
  agenda->events = {{"e", "Launch", "Work", "w", {2000}, {2600.5}, true}};
  agenda->reminders = {{"r", "Call", "Home", "h", std::nullopt, 5},
                       {"s", "Mail", "Home", "h", Date{3000}, 0}};
  agenda->calendarOptions = {{"w", "Work", EKEntityType::event}};
  agenda->nextDeadline = DashboardDeadline{"event-e", "Launch", "Work", {2000}};
  agenda->calendarAuthorizationState = EventKitAuthorizationState::authorized();
  agenda->reminderAuthorizationState = EventKitAuthorizationState::denied("Refused.");
  const json dump = dumped();
  EXPECT_EQ(dump["events"][0],
            json::parse(R"({"id": "e", "title": "Launch", "calendarTitle": "Work",
      "calendarIdentifier": "w", "startDate": 2000.0, "endDate": 2600.5, "isAllDay": true})"));
  EXPECT_TRUE(dump["reminders"][0]["dueDate"].is_null());
  EXPECT_EQ(dump["reminders"][0]["priority"], 5);
  EXPECT_EQ(dump["reminders"][1]["dueDate"], 3000);
  EXPECT_EQ(dump["calendarOptions"][0], json::parse(R"({"id": "w", "title": "Work", "type": 0})"));
  EXPECT_EQ(dump["nextDeadline"]["source"], "calendar");
  EXPECT_EQ(dump["nextDeadline"]["date"], 2000);
  EXPECT_EQ(dump["calendarAuthorizationState"], "authorized");
  EXPECT_EQ(dump["reminderAuthorizationState"], json::parse(R"({"denied": "Refused."})"));
}

TEST_F(DumpJSONTest, WhatIsDrawnInOrder) {
  const View title = text("Next").font({10, FontWeight::semibold}).foreground(Color::cyan());
  const View view = title.background(filled(Shape::capsule(), Color::white().opacity(0.5)))
                        .opacity(0.5)
                        .named("card");
  const json dump = dumped(view);
  EXPECT_EQ(dump["frames"], (json{{"card", rect(40, 19, 20, 12)}}));
  const json& display = dump["display"];
  ASSERT_EQ(display.size(), 3U);
  EXPECT_EQ(display[0]["kind"], "group");
  EXPECT_EQ(display[1]["kind"], "fill");
  EXPECT_EQ(display[1]["color"], (json::array({1.0, 1.0, 1.0, 0.5})));
  EXPECT_EQ(display[1]["opacity"], 0.5);
  EXPECT_EQ(display[2]["kind"], "text");
  EXPECT_EQ(display[2]["text"], "Next");
  EXPECT_EQ(display[2]["fontSize"], 10);
  EXPECT_EQ(display[2]["weight"], "semibold");
  EXPECT_EQ(display[2]["frame"], rect(40, 19, 20, 12));
  EXPECT_EQ(display[2]["color"][3], 1);  // its own, whatever is around it
}

TEST_F(DumpJSONTest, EveryKindHasItsName) {
  const LinearGradient gradient{{Color::red(), Color::white(), Color::black()}};
  const View view = zstack(
      Alignment::center(),
      {filled(Shape::rectangle(), gradient), filled(Shape::circle(), Material{Color::black()}),
       stroked(Shape::roundedRectangle(8, true), Color::white(), 1),
       symbol("timer").shadow(Shape::rectangle(), Color::black(), 22, {0, 12})});
  std::vector<std::string> kinds;
  const json dump = dumped(view);
  for (const json& item : dump["display"]) kinds.push_back(item["kind"]);
  EXPECT_EQ(kinds,
            (std::vector<std::string>{"gradient", "material", "stroke", "shadow", "symbol"}));
}

TEST_F(DumpJSONTest, IllFormedTextsAreSurvived) {
  agenda->events = {{"e", "\xFF\xFE", "Work", "w", {2000}, {2600}, false}};
  const std::string dump = dumpText(now, *agenda, {});
  EXPECT_EQ(json::parse(dump)["events"][0]["title"], "\uFFFD\uFFFD");
}

}  // namespace
}  // namespace orvane
