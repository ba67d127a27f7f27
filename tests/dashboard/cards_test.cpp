#include <gtest/gtest.h>

#include "dashboard/date_card.h"
#include "dashboard/events_card.h"
#include "dashboard/next_up_card.h"
#include "dashboard/reminders_card.h"
#include "fakes/cell_measurer.h"
#include "fakes/plain_locale.h"
#include "themes.h"
#include "view/layout.h"

namespace orvane {
namespace {

const Date now{1'795'167'660};  // Friday, November 20, 2026, 9:41 AM

class CardsTest : public testing::Test {
 protected:
  DashboardAppearance appearance = themed(DashboardThemeMode::vividBlue);
  fakes::PlainLocale locale;

  [[nodiscard]] CardEnvironment environment() const { return {appearance, locale}; }
  static DisplayList laidOut(const View& view, double width = 420) {
    const View held = view.frame(width, 1000, Alignment::topLeading());
    return layout(held, {width, 1000}, fakes::CellMeasurer()).list;
  }
  // The texts and symbols only, one a line.
  static std::string contents(const View& view, double width = 420) {
    DisplayList list = laidOut(view, width);
    std::erase_if(list, [](const DisplayItem& item) {
      return !std::holds_alternative<TextItem>(item.content) &&
             !std::holds_alternative<SymbolItem>(item.content);
    });
    return describe(list);
  }
  static std::vector<std::string> texts(const View& view) {
    std::vector<std::string> result;
    for (const auto& item : laidOut(view)) {
      if (const auto* text = std::get_if<TextItem>(&item.content)) result.push_back(text->text);
    }
    return result;
  }
  static long rowsOf(const View& view, const std::string& prefix) {
    const auto all = texts(view);
    return std::count_if(all.begin(), all.end(), [&](const std::string& text) {
      return text.compare(0, prefix.size(), prefix) == 0;
    });
  }
  static bool shows(const View& view, const std::string& wanted) {
    const auto all = texts(view);
    return std::find(all.begin(), all.end(), wanted) != all.end();
  }
  static bool hasSymbol(const View& view, const std::string& name) {
    for (const auto& item : laidOut(view)) {
      const auto* symbol = std::get_if<SymbolItem>(&item.content);
      if (symbol && symbol->name == name) return true;
    }
    return false;
  }

  static std::vector<DashboardEvent> events(int count) {
    std::vector<DashboardEvent> result;
    for (int index = 0; index < count; ++index) {
      const std::string name = "Event " + std::to_string(index);
      result.push_back({name, name, "Work", "w", now + 3600 * index, now + 7200, false});
    }
    return result;
  }
  static std::vector<DashboardReminder> reminders(int count) {
    std::vector<DashboardReminder> result;
    for (int index = 0; index < count; ++index) {
      const std::string name = "Reminder " + std::to_string(index);
      result.push_back({name, name, "Home", "h", std::nullopt, index});
    }
    return result;
  }
  static EventList listOf(const std::vector<DashboardEvent>& events) {
    return {events.begin(), events.end()};
  }
};

TEST_F(CardsTest, DateCard) {
  EXPECT_EQ(contents(DateCard{now}.body(now, environment())),
            "text (20.0 20.0 63.0 25.2) \"Friday\" 21 semibold rounded, white at 0.86\n"
            "text (20.0 57.2 378.2 53.4) \"November 20, 2026\" 44.5 bold, white, lines 1\n"
            "symbol (20.0 123.2 14.4 14.4) arrow.triangle.2.circlepath 12 semibold, white at 0.68\n"
            "text (42.4 122.6 91.0 15.6) \"Synced 9:41 AM\" 13 semibold rounded, white at 0.68\n");
}

TEST_F(CardsTest, DateCardBeforeTheFirstRefresh) {
  EXPECT_TRUE(
      shows(DateCard{}.body(now, environment()), "Syncing with Apple Calendar and Reminders"));
}

TEST_F(CardsTest, TheDateShrinksInANarrowColumn) {
  const auto list = laidOut(DateCard{now}.body(now, environment()), 315);
  for (const auto& item : list) {
    const auto* text = std::get_if<TextItem>(&item.content);
    if (!text || text->text != "November 20, 2026") continue;
    EXPECT_EQ(text->style.font.size, 32.25);  // 17 characters, half the size each, in 275 points
    EXPECT_LE(item.frame.right(), 295);
  }
}

TEST_F(CardsTest, NextUpCard) {
  const DashboardDeadline deadline{"event-1", "Launch", "Work", now + 90061,
                                   DashboardDeadlineSource::calendar};
  EXPECT_EQ(contents(NextUpCard{deadline, now}.body(environment())),
            "text (20.0 23.8 45.5 15.6) \"Next Up\" 13 bold, white at 0.68, uppercase\n"
            "symbol (329.9 25.0 12.1 13.2) calendar 11 bold, white at 0.82\n"
            "text (347.0 25.0 44.0 13.2) \"Calendar\" 11 bold, white at 0.82, lines 1\n"
            "text (20.0 55.2 257.6 67.2) \"25:01:01\" 56 bold rounded digits, white, lines 1, "
            "cells\n"
            "text (20.0 130.4 54.0 21.6) \"Launch\" 18 semibold, white\n"
            "text (20.0 160.0 208.0 15.6) \"Work at Nov 21, 2026 at 10:42 AM\" 13 semibold, white "
            "at 0.68\n");
}

TEST_F(CardsTest, TheCountdownIsOneTextOfCells) {
  const DashboardDeadline deadline{"reminder-1", "Call", "Home", now + 3600 * 100,
                                   DashboardDeadlineSource::reminder};
  const auto list = laidOut(NextUpCard{deadline, now}.body(environment()), 315);
  const auto countdown = std::find_if(list.begin(), list.end(), [](const DisplayItem& item) {
    const auto* text = std::get_if<TextItem>(&item.content);
    return text && text->text == "100:00:00";
  });
  ASSERT_NE(countdown, list.end());
  const auto& text = std::get<TextItem>(countdown->content);
  EXPECT_EQ(text.cells.size(), 9U);
  // Seven digits and two colons in 275 points.
  EXPECT_EQ(text.style.font.size, 52.75);
}

TEST_F(CardsTest, WithoutADeadlineThereIsADimmedPlaceholderAndNoPill) {
  const View card = NextUpCard{std::nullopt, now}.body(environment());
  EXPECT_EQ(contents(card),
            "text (20.0 20.0 45.5 15.6) \"Next Up\" 13 bold, white at 0.68, uppercase\n"
            "text (20.0 47.6 224.0 67.2) \"--:--:--\" 56 bold digits, white at 0.45, cells\n"
            "text (20.0 122.8 367.5 18.0) \"Add a time to an Apple Calendar event or Reminder\" 15 "
            "semibold, white at 0.68\n");
  EXPECT_FALSE(hasSymbol(card, "calendar"));
}

TEST_F(CardsTest, EventsCardShowsSevenRowsButCountsAll) {
  const auto eight = events(8);
  const View card =
      EventsCard{"Today", listOf(eight), {}, EventKitAuthorizationState::authorized(), now}.body(
          environment());
  EXPECT_EQ(rowsOf(card, "Event "), 7);
  EXPECT_TRUE(shows(card, "Today"));
  EXPECT_TRUE(shows(card, "8"));
  EXPECT_FALSE(shows(card, "Event 7"));
}

TEST_F(CardsTest, RemindersCardShowsNineRowsButCountsAll) {
  const auto ten = reminders(10);
  const View card =
      RemindersCard{ten, EventKitAuthorizationState::authorized(), now}.body(environment());
  EXPECT_EQ(rowsOf(card, "Reminder "), 9);
  EXPECT_TRUE(shows(card, "Reminders"));
  EXPECT_TRUE(shows(card, "10"));
}

TEST_F(CardsTest, WithCalendarsDeniedCachedEventsAreNotShown) {
  const auto cached = events(3);
  const View card =
      EventsCard{
          "Today", listOf(cached), {}, EventKitAuthorizationState::denied("Not allowed."), now}
          .body(environment());
  EXPECT_EQ(rowsOf(card, "Event "), 0);
  EXPECT_TRUE(shows(card, "Calendar access needed"));
  EXPECT_TRUE(shows(card, "Not allowed."));
  EXPECT_TRUE(shows(card, "3"));
  EXPECT_TRUE(hasSymbol(card, "calendar.badge.exclamationmark"));
}

TEST_F(CardsTest, WithRemindersDeniedCachedRemindersAreNotShown) {
  const auto cached = reminders(3);
  const View card = RemindersCard{cached, EventKitAuthorizationState::denied("Refused."), now}.body(
      environment());
  EXPECT_EQ(rowsOf(card, "Reminder "), 0);
  EXPECT_TRUE(shows(card, "Reminders access needed"));
  EXPECT_TRUE(shows(card, "Refused."));
  EXPECT_TRUE(hasSymbol(card, "checklist"));
}

TEST_F(CardsTest, WithoutEventsTodayTheNextTimedOneIsNamed) {
  std::vector<DashboardEvent> tomorrow = events(2);
  for (auto& event : tomorrow) event.startDate = now + 86400;
  tomorrow[0].isAllDay = true;
  const View card = EventsCard{"Today", {}, listOf(tomorrow)}.body(environment());
  EXPECT_TRUE(shows(card, "No events today"));
  EXPECT_TRUE(shows(card, "Next: Event 1 Nov 21, 2026 at 9:41 AM"));
  EXPECT_TRUE(hasSymbol(card, "calendar"));
}

TEST_F(CardsTest, WithoutAnyEventTheCalendarIsClear) {
  const View card = EventsCard{"Today", {}, {}}.body(environment());
  EXPECT_TRUE(shows(card, "Your calendar is clear."));
  EXPECT_TRUE(shows(card, "0"));
}

TEST_F(CardsTest, WithoutReminders) {
  const View card = RemindersCard{{}}.body(environment());
  EXPECT_TRUE(shows(card, "No pending reminders"));
  EXPECT_TRUE(shows(card, "Incomplete Apple Reminders will appear here."));
  EXPECT_TRUE(hasSymbol(card, "checkmark.circle"));
}

TEST_F(CardsTest, UnknownAccessIsTreatedLikeFullAccess) {
  const auto three = events(3);
  for (const auto& state :
       {EventKitAuthorizationState::unknown(), EventKitAuthorizationState::authorized()}) {
    EXPECT_EQ(
        rowsOf(EventsCard{"Today", listOf(three), {}, state, now}.body(environment()), "Event "),
        3);
  }
}

}  // namespace
}  // namespace orvane
