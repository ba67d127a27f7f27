#include "agenda/next_deadline.h"

#include <gtest/gtest.h>

#include <random>

#include "agenda/selection.h"
#include "fakes/memory_app_service.h"
#include "fakes/memory_user_defaults.h"
#include "fakes/plain_locale.h"

namespace orvane {
namespace {

constexpr Date now{1'000'000};

DashboardEvent event(const std::string& id, TimeInterval in, const std::string& title = "Talk") {
  return {id, title, "Work", "work", now + in, now + in + 3600, false};
}
DashboardEvent allDay(const std::string& id, TimeInterval in) {
  auto result = event(id, in);
  result.isAllDay = true;
  return result;
}
DashboardReminder reminder(const std::string& id, std::optional<TimeInterval> in,
                           const std::string& title = "Call") {
  return {id, title, "Home", "home", in ? std::optional(now + *in) : std::nullopt, 0};
}

class NextDeadlineTest : public testing::Test {
 protected:
  // The id of the deadline, or a dash.
  std::string next(Date at = now) {
    const auto found = findNextDeadline(events_, reminders_, settings_, locale_, at);
    return found ? found->id : "-";
  }

  fakes::MemoryUserDefaults defaults_;
  fakes::MemoryAppService service_;
  DashboardSettings settings_{defaults_, service_};
  fakes::PlainLocale locale_;
  std::vector<DashboardEvent> events_;
  std::vector<DashboardReminder> reminders_;
};

TEST_F(NextDeadlineTest, EmptyListsGiveNone) { EXPECT_EQ(next(), "-"); }

TEST_F(NextDeadlineTest, AllSwitchesOffGiveNone) {
  events_ = {event("e", 60)};
  reminders_ = {reminder("r", 60)};
  settings_.countdownIncludesEvents = false;
  settings_.countdownIncludesReminders = false;
  EXPECT_EQ(next(), "-");
}

TEST_F(NextDeadlineTest, EachSwitchLeavesTheOtherKind) {
  events_ = {event("e", 60)};
  reminders_ = {reminder("r", 120)};
  settings_.countdownIncludesEvents = false;
  EXPECT_EQ(next(), "reminder-r");
  settings_.countdownIncludesEvents = true;
  settings_.countdownIncludesReminders = false;
  events_ = {event("e", 180)};
  EXPECT_EQ(next(), "event-e");
}

TEST_F(NextDeadlineTest, ADeadlineCarriesWhatItPointsAt) {
  events_ = {event("e", 60, "Review")};
  EXPECT_EQ(findNextDeadline(events_, reminders_, settings_, locale_, now),
            (DashboardDeadline{"event-e", "Review", "Work", now + 60,
                               DashboardDeadlineSource::calendar}));
  events_.clear();
  reminders_ = {reminder("r", 30, "Pay")};
  EXPECT_EQ(findNextDeadline(events_, reminders_, settings_, locale_, now),
            (DashboardDeadline{"reminder-r", "Pay", "Home", now + 30,
                               DashboardDeadlineSource::reminder}));
}

TEST_F(NextDeadlineTest, AnEventStartingExactlyNowIsNotChosenAMillisecondLaterIs) {
  events_ = {event("e", 0)};
  EXPECT_EQ(next(), "-");
  events_ = {event("e", 0.001)};
  EXPECT_EQ(next(), "event-e");
}

TEST_F(NextDeadlineTest, ARunningEventIsNotChosen) {
  events_ = {event("running", -300), event("later", 7200)};
  EXPECT_EQ(next(), "event-later");
  reminders_ = {reminder("r", 3600)};
  EXPECT_EQ(next(), "reminder-r");
}

TEST_F(NextDeadlineTest, AnAllDayEventCountsUntilItsDayBeginsWhereAllDayEventsCount) {
  events_ = {allDay("today", -3600), allDay("tomorrow", 82'800)};
  EXPECT_EQ(next(), "-");
  settings_.countdownIncludesAllDayEvents = true;
  EXPECT_EQ(next(), "event-tomorrow");
  EXPECT_EQ(next(now + 82'799), "event-tomorrow");
  EXPECT_EQ(next(now + 82'800), "-");
}

TEST_F(NextDeadlineTest, AnEventGoesBeforeAReminderAtTheSameInstant) {
  events_ = {event("e", 60)};
  reminders_ = {reminder("r", 60)};
  EXPECT_EQ(next(), "event-e");
  reminders_ = {reminder("r", 59.999)};
  EXPECT_EQ(next(), "reminder-r");
}

TEST_F(NextDeadlineTest, TheFirstOfTwoAtTheSameInstantWins) {
  events_ = {event("late", 90), event("b", 60), event("a", 60)};
  EXPECT_EQ(next(), "event-b");
  events_.clear();
  reminders_ = {reminder("d", 60), reminder("c", 60)};
  EXPECT_EQ(next(), "reminder-d");
}

TEST_F(NextDeadlineTest, AnUndatedOrOverdueReminderIsNeverChosen) {
  reminders_ = {reminder("undated", std::nullopt), reminder("overdue", -60), reminder("due", 0)};
  EXPECT_EQ(next(), "-");
}

TEST_F(NextDeadlineTest, TheDefaultIgnoredWordsRuleOutTitlesThatContainThem) {
  for (const char* title : {"LUNCH meeting", "Holiday party", "Team Lunch", "Birthdays sync"}) {
    events_ = {event("e", 60, title)};
    reminders_ = {reminder("r", 60, title)};
    EXPECT_EQ(next(), "-") << title;
  }
}

TEST_F(NextDeadlineTest, ASimilarWordIsNoIgnoredWord) {
  events_ = {event("e", 60, "Brunch with Sam")};
  EXPECT_EQ(next(), "event-e");
}

TEST_F(NextDeadlineTest, WithoutIgnoredWordsNothingIsIgnored) {
  settings_.ignoredWordsText = "";
  events_ = {event("e", 60, "lunch")};
  EXPECT_EQ(next(), "event-e");
}

TEST_F(NextDeadlineTest, AnIgnoredLetterRulesOutEveryTitleThatContainsIt) {
  settings_.ignoredWordsText = "a";
  events_ = {event("1", 60, "Talk"), event("2", 90, "SAP"), event("3", 120, "Review")};
  EXPECT_EQ(next(), "event-3");
}

TEST_F(NextDeadlineTest, OnlyTheTitleIsTestedNeverTheCalendar) {
  settings_.ignoredWordsText = "work";
  events_ = {event("e", 60)};
  EXPECT_EQ(next(), "event-e");
}

TEST_F(NextDeadlineTest, IgnoredWordsAreReadAfreshEachTime) {
  events_ = {event("e", 60, "Gym")};
  EXPECT_EQ(next(), "event-e");
  settings_.ignoredWordsText = "GYM";
  EXPECT_EQ(next(), "-");
}

TEST_F(NextDeadlineTest, ThePassedDeadlineGivesWayToTheNextWithoutARefresh) {
  events_ = {event("ten", 1), event("eleven", 3601)};
  EXPECT_EQ(next(), "event-ten");
  EXPECT_EQ(next(now + 1), "event-eleven");
  EXPECT_EQ(next(now + 3601), "-");
}

// The rule as it is told: collect every candidate, then take the first of the earliest.
std::string toldRule(const std::vector<DashboardEvent>& events,
                     const std::vector<DashboardReminder>& reminders,
                     const DashboardSettings& settings) {
  const fakes::PlainLocale locale;
  const auto ignored = [&](const std::string& title) {
    for (const auto& word : settings.smartNextIgnoredWords()) {
      if (locale.lowercased(title).find(locale.lowercased(word)) != std::string::npos) return true;
    }
    return false;
  };
  std::vector<std::pair<Date, std::string>> candidates;
  for (const auto& e : events) {
    if (!*settings.countdownIncludesEvents || !(e.startDate > now)) continue;
    if ((e.isAllDay && !*settings.countdownIncludesAllDayEvents) || ignored(e.title)) continue;
    candidates.emplace_back(e.startDate, "event-" + e.id);
  }
  for (const auto& r : reminders) {
    if (!*settings.countdownIncludesReminders || !r.dueDate || !(*r.dueDate > now)) continue;
    if (!ignored(r.title)) candidates.emplace_back(*r.dueDate, "reminder-" + r.id);
  }
  const auto best = std::min_element(candidates.begin(), candidates.end(),
                                     [](auto& a, auto& b) { return a.first < b.first; });
  return best == candidates.end() ? "-" : best->second;
}

TEST_F(NextDeadlineTest, AgreesWithTheRuleAsItIsToldOnRandomDays) {
  std::mt19937 random(7);
  const auto pick = [&](int bound) { return static_cast<int>(random() % unsigned(bound)); };
  const char* const titles[] = {"Talk", "Lunch", "Birthday", "Review"};
  for (int round = 0; round < 2000; ++round) {
    events_.clear();
    reminders_.clear();
    for (int i = pick(6); i > 0; --i) {
      events_.push_back(event(std::to_string(i), pick(8) - 2, titles[pick(4)]));
      events_.back().isAllDay = pick(3) == 0;
    }
    for (int i = pick(6); i > 0; --i) {
      const auto due = pick(4) ? std::optional<TimeInterval>(pick(8) - 2) : std::nullopt;
      reminders_.push_back(reminder(std::to_string(i), due, titles[pick(4)]));
    }
    settings_.countdownIncludesEvents = pick(5) != 0;
    settings_.countdownIncludesReminders = pick(5) != 0;
    settings_.countdownIncludesAllDayEvents = pick(2) != 0;
    ASSERT_EQ(next(), toldRule(events_, reminders_, settings_)) << "round " << round;
  }
}

// Counts what is asked of it.
class CountingLocale final : public Locale {
 public:
  [[nodiscard]] std::string lowercased(std::string_view text) const override {
    ++lowered;
    return plain_.lowercased(text);
  }
  [[nodiscard]] std::string uppercased(std::string_view text) const override {
    return plain_.uppercased(text);
  }
  [[nodiscard]] std::string weekdayWide(Date date) const override {
    return plain_.weekdayWide(date);
  }
  [[nodiscard]] std::string dateLong(Date date) const override { return plain_.dateLong(date); }
  [[nodiscard]] std::string dateAbbreviatedTimeShortened(Date date) const override {
    return plain_.dateAbbreviatedTimeShortened(date);
  }
  [[nodiscard]] std::string timeShortened(Date date) const override {
    return plain_.timeShortened(date);
  }
  [[nodiscard]] std::string integer(std::int64_t number) const override {
    return plain_.integer(number);
  }
  [[nodiscard]] int localizedCaseInsensitiveCompare(std::string_view a,
                                                    std::string_view b) const override {
    return plain_.localizedCaseInsensitiveCompare(a, b);
  }
  [[nodiscard]] bool isRightToLeft() const override { return false; }

  mutable int lowered = 0;

 private:
  fakes::PlainLocale plain_;
};

TEST_F(NextDeadlineTest, TitlesOfLaterItemsAreNotLookedAt) {
  for (int i = 1; i <= 10'000; ++i) events_.push_back(event(std::to_string(i), i));
  const CountingLocale locale;
  EXPECT_EQ(findNextDeadline(events_, reminders_, settings_, locale, now)->id, "event-1");
  EXPECT_EQ(locale.lowered, 4);  // three ignored words and one title
}

TEST_F(NextDeadlineTest, WithNothingToComeNoWordIsReadAtAll) {
  events_ = {event("past", -60)};
  const CountingLocale locale;
  EXPECT_EQ(findNextDeadline(events_, reminders_, settings_, locale, now), std::nullopt);
  EXPECT_EQ(locale.lowered, 0);
}

class SelectionTest : public NextDeadlineTest {
 protected:
  std::string kept() {
    std::string ids;
    for (const auto& e : filterEvents(events_, *settings_.selectedCalendarIDs)) ids += e.id;
    return ids;
  }
};

TEST_F(SelectionTest, AnEmptySelectionKeepsEveryEvent) {
  events_ = {event("b", 60), event("a", 30)};
  EXPECT_EQ(kept(), "ba");
}

TEST_F(SelectionTest, ASelectionKeepsItsEventsInTheOrderGiven) {
  events_ = {event("c", 60), event("b", 50), event("a", 40)};
  events_[1].calendarIdentifier = "play";
  settings_.selectedCalendarIDs = TextSet{"work"};
  EXPECT_EQ(kept(), "ca");
  settings_.selectedCalendarIDs = TextSet{"Work"};
  EXPECT_EQ(kept(), "");
  settings_.selectedCalendarIDs = TextSet{"nobody has it"};
  EXPECT_EQ(kept(), "");
  events_.clear();
  EXPECT_EQ(kept(), "");
}

TEST_F(SelectionTest, RemindersAreKeptByTheirLists) {
  reminders_ = {reminder("a", 1), reminder("b", 2)};
  reminders_[0].calendarIdentifier = "other";
  EXPECT_EQ(filterReminders(reminders_, *settings_.selectedReminderListIDs).size(), 2u);
  settings_.selectedReminderListIDs = TextSet{"home"};
  EXPECT_EQ(filterReminders(reminders_, *settings_.selectedReminderListIDs),
            std::vector{reminders_[1]});
}

}  // namespace
}  // namespace orvane
