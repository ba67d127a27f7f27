// Rules that repeat within days, against an expansion that looks at every single step.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "linux/reader/date_values.h"
#include "linux/reader/rule_expansion.h"
#include "linux/reader/time_reading.h"

namespace orvane::ical {
namespace {

WallTime at(const std::string& text) { return parseDateValue(text)->time; }

struct Expansion {
  std::vector<WallTime> times;
  std::int64_t stepsLeft = 0;
};

Expansion expanded(const RecurrenceRule& rule, WallTime start, ExpansionRange range,
                   std::int64_t steps) {
  Expansion expansion;
  StepBudget budget(steps);
  expandRule(rule, start, {}, range, budget, [&](WallTime time) {
    expansion.times.push_back(time);
    return true;
  });
  expansion.stepsLeft = budget.left();
  return expansion;
}

std::string textOf(const std::vector<WallTime>& times) {
  std::string text;
  for (const WallTime time : times) text += floatingText(time) + " ";
  return text;
}

bool holds(const std::vector<int>& list, std::int64_t value) {
  return list.empty() || std::count(list.begin(), list.end(), value) > 0;
}

bool isMeant(const RecurrenceRule& rule, WallTime time, std::int64_t unit) {
  const std::int64_t second = secondOfDay(time);
  const auto date = civilDate(dayOf(time));
  const bool isDay = holds(rule.byMonth, static_cast<unsigned>(date.month())) &&
                     holds(rule.byMonthDay, static_cast<unsigned>(date.day())) &&
                     (rule.byDay.empty() ||
                      std::any_of(rule.byDay.begin(), rule.byDay.end(), [&](const auto& day) {
                        return day.weekday == weekdayOf(dayOf(time));
                      }));
  return isDay && holds(rule.byHour, second / 3600) &&
         (unit == 3600 || holds(rule.byMinute, second / 60 % 60)) &&
         (unit >= 60 || holds(rule.bySecond, second % 60));
}

// Every second of a step that its parts name; of those that none names, that of the start.
std::vector<WallTime> timesOfStep(const RecurrenceRule& rule, WallTime start, WallTime step,
                                  std::int64_t unit) {
  std::vector<WallTime> times;
  for (WallTime time = step; time < step + unit; ++time) {
    const std::int64_t minute = secondOfDay(time) / 60 % 60, second = secondOfDay(time) % 60;
    const bool isMinute =
        unit < 3600 || (rule.byMinute.empty() ? minute == secondOfDay(start) / 60 % 60
                                              : holds(rule.byMinute, minute));
    const bool isSecond = unit < 60 || (rule.bySecond.empty() ? second == secondOfDay(start) % 60
                                                              : holds(rule.bySecond, second));
    if (isMinute && isSecond) times.push_back(time);
  }
  return times;
}

std::vector<WallTime> steppedThrough(const RecurrenceRule& rule, WallTime start, WallTime end) {
  const std::int64_t unit = rule.frequency == Frequency::hourly     ? 3600
                            : rule.frequency == Frequency::minutely ? 60
                                                                    : 1;
  std::vector<WallTime> times{start};
  const auto isFull = [&] { return rule.count > 0 && std::ssize(times) >= rule.count; };
  for (WallTime step = start - start % unit; step < end; step += unit * rule.interval) {
    if (!isMeant(rule, step, unit)) continue;
    for (const WallTime time : timesOfStep(rule, start, step, unit)) {
      if (time > start && time < end && !isFull()) times.push_back(time);
    }
    if (isFull()) break;
  }
  return times;
}

class RandomFineRule {
 public:
  explicit RandomFineRule(unsigned seed) : random_(seed) {}

  RecurrenceRule rule() {
    RecurrenceRule rule;
    rule.frequency = static_cast<Frequency>(number(0, 2));
    rule.interval = chance(2) ? 1 : number(2, chance(2) ? 100 : 100'000);
    if (chance(3)) rule.count = number(1, chance(2) ? 100 : 30'000);
    if (chance(2)) rule.byHour = list(0, 23);
    if (chance(2)) rule.byMinute = list(0, 59);
    if (chance(2)) rule.bySecond = list(0, 59);
    if (chance(4)) rule.byMonth = list(11, 12);
    if (chance(4)) rule.byMonthDay = list(1, 31);
    if (chance(4)) rule.byDay = {{0, number(0, 6)}, {0, number(0, 6)}};
    return rule;
  }
  int number(int lowest, int highest) {
    return std::uniform_int_distribution<int>(lowest, highest)(random_);
  }

 private:
  bool chance(int oneIn) { return number(1, oneIn) == 1; }
  std::vector<int> list(int lowest, int highest) {
    std::vector<int> values;
    for (int count = number(1, 6); count > 0; --count) values.push_back(number(lowest, highest));
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
    return values;
  }

  std::mt19937 random_;
};

TEST(FineRules, AgreeWithSteppingThrough) {
  RandomFineRule random(41);
  std::size_t compared = 0;
  for (int round = 0; round < 250; ++round) {
    const RecurrenceRule rule = random.rule();
    const WallTime start = at("20261128T000000") + random.number(0, 3 * 86400);
    const WallTime end = start + 4 * kSecondsPerDay;
    auto wanted = steppedThrough(rule, start, end);
    compared += wanted.size() > 2 ? 1 : 0;
    ASSERT_EQ(textOf(expanded(rule, start, {kFirstTime, end}, 50'000'000).times), textOf(wanted))
        << round;
    const WallTime from = start + random.number(0, 4 * 86400);
    std::erase_if(wanted, [from](WallTime time) { return time < from; });
    ASSERT_EQ(textOf(expanded(rule, start, {from, end}, 50'000'000).times), textOf(wanted))
        << round << " from " << floatingText(from);
  }
  EXPECT_GT(compared, 80U);
}

struct LongCase {
  const char* rule;
  std::size_t found;  // on 2026-11-20, a Friday, since 1970
};

// Fifty-six years are 20,777 days and 1,795,132,800 seconds.
TEST(FineRules, AreCountedWithoutNamingWhatLiesBefore) {
  const WallTime start = at("19700101T000000");
  const ExpansionRange range{at("20261120T000000"), at("20261121T000000")};
  for (const LongCase& tested : {
           LongCase{"FREQ=SECONDLY;BYHOUR=9;COUNT=1000000000", 3600},
           LongCase{"FREQ=SECONDLY;BYHOUR=9;COUNT=74797201", 0},
           LongCase{"FREQ=SECONDLY;BYHOUR=9;COUNT=74797202", 1},  // the start is one of them
           LongCase{"FREQ=SECONDLY;BYHOUR=9;COUNT=74797301", 100},
           LongCase{"FREQ=MINUTELY;BYHOUR=9,10;BYDAY=FR;COUNT=1000000", 120},
           LongCase{"FREQ=MINUTELY;INTERVAL=7;BYHOUR=9;COUNT=1000000", 9},
           LongCase{"FREQ=HOURLY;BYMINUTE=0,30;BYDAY=FR;COUNT=1000000", 48},
           LongCase{"FREQ=HOURLY;INTERVAL=5;BYHOUR=20;COUNT=1000000", 0},
           LongCase{"FREQ=HOURLY;BYMONTH=2;BYMONTHDAY=30;COUNT=7", 0},
       }) {
    const auto found = expanded(*parseRecurrenceRule(tested.rule), start, range, 100'000);
    EXPECT_EQ(found.times.size(), tested.found) << tested.rule;
    EXPECT_GT(found.stepsLeft, 0) << tested.rule;
  }
}

TEST(FineRules, PassOverWhatTheirPartsDoNotName) {
  const WallTime start = at("19700101T000000");
  const ExpansionRange range{at("20261116T000000"), at("20261204T000000")};
  for (const char* rule :
       {"FREQ=SECONDLY;INTERVAL=2;BYSECOND=1,3,5,7,9,11,13,15,17,19,21,23,25,27,29,31,33,35,37,39",
        "FREQ=SECONDLY;BYSECOND=0;BYMINUTE=0;BYHOUR=3", "FREQ=MINUTELY;INTERVAL=2;BYMINUTE=1,3,5",
        "FREQ=SECONDLY;BYDAY=WE;BYMONTHDAY=29"}) {
    const auto found = expanded(*parseRecurrenceRule(rule), start, range, 90'000);
    EXPECT_GT(found.stepsLeft, 0) << rule;
    EXPECT_LE(found.times.size(), 18U) << rule;
  }
}

TEST(FineRules, OfADateAreDaily) {
  const auto days = [](const char* text) {
    const auto rule = ruleOfDates(*parseRecurrenceRule(text));
    return textOf(expanded(rule, at("20261120"), {kFirstTime, at("20261125")}, 1000).times);
  };
  EXPECT_EQ(days("FREQ=HOURLY"), days("FREQ=DAILY"));
  EXPECT_EQ(days("FREQ=SECONDLY;BYSECOND=1,2,3;BYSETPOS=2"), days("FREQ=DAILY"));
  EXPECT_EQ(days("FREQ=HOURLY;INTERVAL=48"), days("FREQ=DAILY;INTERVAL=2"));
  EXPECT_EQ(days("FREQ=WEEKLY;BYDAY=MO;BYHOUR=9,10"), days("FREQ=WEEKLY;BYDAY=MO"));
}

}  // namespace
}  // namespace orvane::ical
