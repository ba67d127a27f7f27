#include "linux/reader/rule_expansion.h"

#include <gtest/gtest.h>
#include <libical/ical.h>

#include <algorithm>
#include <memory>
#include <random>
#include <sstream>

#include "linux/reader/date_values.h"
#include "linux/reader/time_reading.h"

namespace orvane::ical {
namespace {

WallTime at(const std::string& text) { return parseDateValue(text)->time; }

std::vector<WallTime> expanded(const std::string& ruleText, WallTime start, std::size_t most,
                               ExpansionRange range = {}, std::int64_t steps = 50'000'000) {
  const auto rule = parseRecurrenceRule(ruleText);
  std::vector<WallTime> times;
  if (!rule) return times;
  StepBudget budget(steps);
  const auto until = rule->until ? std::optional(rule->until->time) : std::nullopt;
  expandRule(*rule, start, until, range, budget, [&](WallTime time) {
    times.push_back(time);
    return times.size() < most;
  });
  return times;
}

std::string textOf(const std::vector<WallTime>& times) {
  std::string text;
  for (const WallTime time : times) text += floatingText(time) + " ";
  if (!text.empty()) text.pop_back();
  return text;
}

struct Case {
  const char* name;
  const char* start;
  const char* rule;
  const char* expected;  // the first of them
};

class RuleTable : public testing::TestWithParam<Case> {};

TEST_P(RuleTable, ComesToPass) {
  const std::string expected = GetParam().expected;
  const auto count =
      static_cast<std::size_t>(std::count(expected.begin(), expected.end(), ' ')) + 1;
  EXPECT_EQ(textOf(expanded(GetParam().rule, at(GetParam().start), count)), expected);
}

std::string nameOf(const testing::TestParamInfo<Case>& tested) { return tested.param.name; }

// Mostly the examples of RFC 5545 section 3.8.5.3.
INSTANTIATE_TEST_SUITE_P(
    Examples, RuleTable,
    testing::Values(
        Case{"DailyForTenOccurrences", "19970902T090000", "FREQ=DAILY;COUNT=3",
             "19970902T090000 19970903T090000 19970904T090000"},
        Case{"EveryOtherDay", "19970902T090000", "FREQ=DAILY;INTERVAL=2",
             "19970902T090000 19970904T090000 19970906T090000"},
        Case{"DaysOfJanuary", "19980130T090000", "FREQ=YEARLY;BYMONTH=1;BYDAY=SU,MO,TU,WE,TH,FR,SA",
             "19980130T090000 19980131T090000 19990101T090000 19990102T090000"},
        Case{"WeekStartsMonday", "19970805T090000",
             "FREQ=WEEKLY;INTERVAL=2;COUNT=4;BYDAY=TU,SU;WKST=MO",
             "19970805T090000 19970810T090000 19970819T090000 19970824T090000"},
        Case{"WeekStartsSunday", "19970805T090000",
             "FREQ=WEEKLY;INTERVAL=2;COUNT=4;BYDAY=TU,SU;WKST=SU",
             "19970805T090000 19970817T090000 19970819T090000 19970831T090000"},
        Case{"FirstAndLastSunday", "19970907T090000",
             "FREQ=MONTHLY;INTERVAL=2;COUNT=6;BYDAY=1SU,-1SU",
             "19970907T090000 19970928T090000 19971102T090000 19971130T090000 19980104T090000 "
             "19980125T090000"},
        Case{"SecondToLastMonday", "19970922T090000", "FREQ=MONTHLY;BYDAY=-2MO",
             "19970922T090000 19971020T090000 19971117T090000 19971222T090000"},
        Case{"ThirdToLastDay", "19970928T090000", "FREQ=MONTHLY;BYMONTHDAY=-3",
             "19970928T090000 19971029T090000 19971128T090000 19971229T090000 19980129T090000 "
             "19980226T090000"},
        Case{"FirstAndLastDay", "19970930T090000", "FREQ=MONTHLY;BYMONTHDAY=1,-1",
             "19970930T090000 19971001T090000 19971031T090000 19971101T090000"},
        Case{"ShortMonthsAreLeftOut", "20260131T090000", "FREQ=MONTHLY",
             "20260131T090000 20260331T090000 20260531T090000"},
        Case{"LeapDays", "20240229T090000", "FREQ=YEARLY",
             "20240229T090000 20280229T090000 20320229T090000"},
        Case{"DaysOfTheYear", "19970101T090000", "FREQ=YEARLY;INTERVAL=3;BYYEARDAY=1,100,200,-1",
             "19970101T090000 19970410T090000 19970719T090000 19971231T090000 20000101T090000"},
        Case{"TwentiethMonday", "19970519T090000", "FREQ=YEARLY;BYDAY=20MO",
             "19970519T090000 19980518T090000 19990517T090000"},
        Case{"MondayOfWeekTwenty", "19970512T090000", "FREQ=YEARLY;BYWEEKNO=20;BYDAY=MO",
             "19970512T090000 19980511T090000 19990517T090000"},
        Case{"LastWeek", "20201228T090000", "FREQ=YEARLY;BYWEEKNO=-1",
             "20201228T090000 20211227T090000 20221226T090000 20231225T090000"},
        Case{"ThursdaysInMarch", "19970313T090000", "FREQ=YEARLY;BYMONTH=3;BYDAY=TH",
             "19970313T090000 19970320T090000 19970327T090000 19980305T090000"},
        Case{"FridayTheThirteenth", "19970902T090000", "FREQ=MONTHLY;BYDAY=FR;BYMONTHDAY=13",
             "19970902T090000 19980213T090000 19980313T090000 19981113T090000 19990813T090000"},
        Case{"ElectionDay", "19961105T090000",
             "FREQ=YEARLY;INTERVAL=4;BYMONTH=11;BYDAY=TU;BYMONTHDAY=2,3,4,5,6,7,8",
             "19961105T090000 20001107T090000 20041102T090000"},
        Case{"ThirdOfThreeDays", "19970904T090000",
             "FREQ=MONTHLY;COUNT=3;BYDAY=TU,WE,TH;BYSETPOS=3",
             "19970904T090000 19971007T090000 19971106T090000"},
        Case{"SecondToLastWorkday", "19970929T090000",
             "FREQ=MONTHLY;BYDAY=MO,TU,WE,TH,FR;BYSETPOS=-2",
             "19970929T090000 19971030T090000 19971127T090000 19971230T090000"},
        Case{"PositionsAmongTimes", "20260101T080000",
             "FREQ=MONTHLY;BYMONTHDAY=1;BYHOUR=8,12,16;BYSETPOS=1,-1",
             "20260101T080000 20260101T160000 20260201T080000 20260201T160000"},
        Case{"EveryThreeHours", "19970902T090000", "FREQ=HOURLY;INTERVAL=3;UNTIL=19970902T170000",
             "19970902T090000 19970902T120000 19970902T150000"},
        Case{"EveryFifteenMinutes", "19970902T090000", "FREQ=MINUTELY;INTERVAL=15;COUNT=3",
             "19970902T090000 19970902T091500 19970902T093000"},
        Case{"EveryTwentyMinutesInDaytime", "19970902T162000",
             "FREQ=DAILY;BYHOUR=9,16;BYMINUTE=0,20,40",
             "19970902T162000 19970902T164000 19970903T090000 19970903T092000"},
        Case{"MinutelyInDaytime", "19970902T162000", "FREQ=MINUTELY;INTERVAL=20;BYHOUR=9,16",
             "19970902T162000 19970902T164000 19970903T090000 19970903T092000"},
        Case{"HourlyWithMinutes", "20260101T083000", "FREQ=HOURLY;INTERVAL=6;BYMINUTE=15,45",
             "20260101T083000 20260101T084500 20260101T141500 20260101T144500"},
        Case{"SecondlyOnOneSecond", "20260101T083000", "FREQ=SECONDLY;BYSECOND=30;BYMINUTE=59",
             "20260101T083000 20260101T085930 20260101T095930"},
        Case{"UntilIsInclusive", "20260101T083000", "FREQ=DAILY;UNTIL=20260103T083000",
             "20260101T083000 20260102T083000 20260103T083000"},
        Case{"TheStartCounts", "20260101T083000", "FREQ=WEEKLY;BYDAY=MO;COUNT=3",
             "20260101T083000 20260105T083000 20260112T083000"},
        Case{"LargeInterval", "20260101T083000", "FREQ=MINUTELY;INTERVAL=100000",
             "20260101T083000 20260311T191000"},
        Case{"SkipOmit", "20260131T090000", "RSCALE=GREGORIAN;FREQ=MONTHLY;SKIP=OMIT",
             "20260131T090000 20260331T090000 20260531T090000"},
        Case{"SkipBackward", "20260131T090000", "RSCALE=GREGORIAN;FREQ=MONTHLY;SKIP=BACKWARD",
             "20260131T090000 20260228T090000 20260331T090000 20260430T090000"},
        Case{"SkipForward", "20260131T090000", "RSCALE=GREGORIAN;FREQ=MONTHLY;SKIP=FORWARD",
             "20260131T090000 20260301T090000 20260331T090000 20260501T090000"},
        Case{"SkipCounts", "20260131T090000",
             "RSCALE=GREGORIAN;FREQ=MONTHLY;SKIP=BACKWARD;COUNT=3;UNTIL=20300101T000000",
             "20260131T090000 20260228T090000 20260331T090000"},
        Case{"SkipBackwardOfALeapDay", "20240229T090000",
             "RSCALE=GREGORIAN;FREQ=YEARLY;SKIP=BACKWARD",
             "20240229T090000 20250228T090000 20260228T090000 20270228T090000 20280229T090000"},
        Case{"SkipForwardOfALeapDay", "20240229T090000",
             "rscale=gregorian;FREQ=YEARLY;skip=forward",
             "20240229T090000 20250301T090000 20260301T090000 20270301T090000 20280229T090000"},
        Case{"SkipMeetsADayThatIsThere", "20260101T090000",
             "RSCALE=GREGORIAN;FREQ=MONTHLY;BYMONTHDAY=1,28,30,31;BYHOUR=9,10;SKIP=BACKWARD",
             "20260101T090000 20260101T100000 20260128T090000 20260128T100000 20260130T090000 "
             "20260130T100000 20260131T090000 20260131T100000 20260201T090000 20260201T100000 "
             "20260228T090000 20260228T100000 20260301T090000"},
        Case{"SkipForwardMeetsTheNextMonth", "20260401T090000",
             "RSCALE=GREGORIAN;FREQ=MONTHLY;BYMONTHDAY=1,31;SKIP=FORWARD",
             "20260401T090000 20260501T090000 20260531T090000 20260601T090000 20260701T090000 "
             "20260731T090000"},
        Case{"SkipAndDaysFromTheEnd", "20260131T090000",
             "RSCALE=GREGORIAN;FREQ=MONTHLY;BYMONTHDAY=-31;SKIP=FORWARD",
             "20260131T090000 20260201T090000 20260301T090000 20260401T090000 20260501T090000"},
        Case{"SkipAndDaysOfTheYear", "20241231T090000",
             "RSCALE=GREGORIAN;FREQ=YEARLY;BYYEARDAY=366;SKIP=BACKWARD",
             "20241231T090000 20251231T090000 20261231T090000"},
        Case{"SkipThenWeekdays", "20260131T090000",
             "RSCALE=GREGORIAN;FREQ=MONTHLY;BYMONTHDAY=31;BYDAY=SA;SKIP=BACKWARD",
             "20260131T090000 20260228T090000 20261031T090000"},
        Case{"SkipThenPositions", "20260131T090000",
             "RSCALE=GREGORIAN;FREQ=MONTHLY;BYMONTHDAY=27,31;BYSETPOS=-1;SKIP=BACKWARD",
             "20260131T090000 20260228T090000 20260331T090000"},
        Case{"GregorianByName", "20260101T083000", "RSCALE=GREGORIAN;FREQ=DAILY",
             "20260101T083000 20260102T083000"}),
    nameOf);

// Rules that name nothing twice and stay within what both understand alike: the library takes
// negative days of the month for none at all beside BYDAY and in fine rules, and drops the INTERVAL
// of rules within days that name hours or minutes, and keeps YEARLY;BYMONTHDAY to one month.
class RandomRule {
 public:
  explicit RandomRule(unsigned seed) : random_(seed) {}

  std::string text() {
    static const char* frequencies[] = {"YEARLY", "MONTHLY", "WEEKLY", "DAILY", "HOURLY"};
    const std::string frequency = frequencies[number(0, 4)];
    const bool isYearly = frequency == "YEARLY", isMonthly = frequency == "MONTHLY";
    std::string rule = "FREQ=" + frequency;
    const bool isWithinDays = frequency == "HOURLY";
    const bool hasTimes = chance(3);
    if (chance(2) && !(isWithinDays && hasTimes)) {
      rule += ";INTERVAL=" + std::to_string(number(1, 5));
    }
    if (chance(3)) rule += chance(2) ? ";WKST=MO" : ";WKST=SU";
    const bool hasMonths = chance(3);
    if (hasMonths) rule += ";BYMONTH=" + list(1, 12, false);
    const bool hasDays = chance(2);
    const bool hasMonthDays = frequency != "WEEKLY" && (hasMonths || !isYearly) && chance(3);
    if (hasMonthDays) rule += ";BYMONTHDAY=" + list(1, 31, (isYearly || isMonthly) && !hasDays);
    const bool hasYearDays = isYearly && !hasMonths && !hasMonthDays && !hasDays && chance(5);
    if (hasYearDays) rule += ";BYYEARDAY=" + list(1, 366, true);
    if (hasDays) rule += ";BYDAY=" + weekdays((isYearly || isMonthly) && !hasMonthDays);
    if (hasTimes && !isWithinDays && chance(2)) rule += ";BYHOUR=" + list(0, 23, false);
    if (hasTimes && chance(2)) rule += ";BYMINUTE=" + list(0, 59, false);
    if ((isYearly || isMonthly) && hasDays && !hasTimes && chance(2))
      rule += ";BYSETPOS=" + list(1, 3, true);
    return rule;
  }

  int number(int lowest, int highest) {
    return std::uniform_int_distribution<int>(lowest, highest)(random_);
  }
  bool chance(int oneIn) { return number(1, oneIn) == 1; }

 private:
  std::string weekday() {
    static const char* names[] = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};
    return names[number(0, 6)];
  }
  std::string weekdays(bool withPositions) {
    const std::string position = withPositions && chance(2) ? std::to_string(number(1, 4)) : "";
    const std::string sign = !position.empty() && chance(2) ? "-" : "";
    const std::string first = weekday();
    const std::string second = weekday();
    return sign + position + first + (second == first ? "" : "," + sign + position + second);
  }
  std::string list(int lowest, int highest, bool withNegatives) {
    std::string text;
    int value = lowest - 1;
    for (int count = number(1, 3); count > 0 && value < highest; --count) {
      value = number(value + 1, highest);
      if (!text.empty()) text += ",";
      text += (withNegatives && value > 0 && value <= 28 && chance(3) ? "-" : "") +
              std::to_string(value);
    }
    return text;
  }

  std::mt19937 random_;
};

std::vector<WallTime> expandedByLibrary(const std::string& rule, WallTime start, WallTime last,
                                        std::size_t most) {
  struct FreeIterator {
    void operator()(icalrecur_iterator* iterator) const { icalrecur_iterator_free(iterator); }
  };
  const auto parsed = icalrecurrencetype_from_string(rule.c_str());
  const auto begin = icaltime_from_string(floatingText(start).c_str());
  const std::unique_ptr<icalrecur_iterator, FreeIterator> iterator(
      icalrecur_iterator_new(parsed, begin));
  std::vector<WallTime> times;
  while (iterator && times.size() < most) {
    const auto time = icalrecur_iterator_next(iterator.get());
    if (icaltime_is_null_time(time)) break;
    const auto wall =
        wallTimeOf(time.year, time.month, time.day, time.hour, time.minute, time.second);
    if (!wall || *wall >= last) break;
    if (*wall > start) times.push_back(*wall);
  }
  return times;
}

TEST(RuleExpansion, AgreesWithTheLibraryOnRandomRules) {
  RandomRule random(20261120);
  int compared = 0;
  for (int round = 0; round < 800; ++round) {
    const std::string rule = random.text();
    const WallTime around = at("20200101T000000") + random.number(0, 60 * 24 * 1000) * 60;
    // From a start that the rule itself matches; without one the two need not agree.
    const auto sought = expanded(rule, around, 2, {around, around + 1500 * kSecondsPerDay});
    if (sought.size() < 2) continue;
    const WallTime start = sought.back();
    // The library looks for the next match of a fine rule one step after the other.
    const bool isFine = rule.find("HOURLY") != std::string::npos;
    const WallTime last = start + (isFine ? 150 : 1500) * kSecondsPerDay;
    auto own = expanded(rule, start, 41, {start, last});
    own.erase(own.begin());
    const auto theirs =
        expandedByLibrary(rule + ";UNTIL=" + floatingText(last - 1), start, last, 40);
    ASSERT_EQ(textOf(own), textOf(theirs)) << rule << " from " << floatingText(start);
    if (!theirs.empty()) ++compared;
  }
  EXPECT_GT(compared, 400);
}

TEST(RuleExpansion, ALaterRangeIsTheEndOfAnEarlierOne) {
  RandomRule random(1120);
  for (int round = 0; round < 300; ++round) {
    std::string rule = random.text();
    if (random.chance(2)) rule += ";COUNT=" + std::to_string(random.number(1, 3000));
    const WallTime start = at("20200101T000000") + random.number(0, 90000) * 60;
    const WallTime from = start + random.number(0, 300) * kSecondsPerDay / 4;
    const WallTime to = from + 20 * kSecondsPerDay;
    auto whole = expanded(rule, start, 1'000'000, {kFirstTime, to});
    std::erase_if(whole, [from](WallTime time) { return time < from; });
    ASSERT_EQ(textOf(whole), textOf(expanded(rule, start, 1'000'000, {from, to})))
        << rule << " from " << floatingText(start) << " in " << floatingText(from);
  }
}

TEST(RuleExpansion, DaysThatHaveMovedAreFoundInALaterRange) {
  const auto rule = [](const std::string& more) { return "RSCALE=GREGORIAN;FREQ=MONTHLY;" + more; };
  const WallTime start = at("20200131T090000");
  const auto in = [&](const std::string& text, const char* from, const char* to) {
    return textOf(expanded(text, start, 10, {at(from), at(to)}));
  };
  for (const char* counted : {"", ";COUNT=1000"}) {
    const std::string more = counted;
    EXPECT_EQ(in(rule("SKIP=FORWARD" + more), "20261201T000000", "20261202T000000"),
              "20261201T090000");
    EXPECT_EQ(in(rule("SKIP=BACKWARD" + more), "20261130T000000", "20261201T000000"),
              "20261130T090000");
    EXPECT_EQ(in(rule("BYMONTHDAY=-31;SKIP=BACKWARD" + more), "20261031T000000", "20261101T000000"),
              "20261031T090000");
  }
}

// Each of these would take the library minutes to hours.
TEST(RuleExpansion, HugeRulesTakeFewSteps) {
  const WallTime start = at("19700101T000000");
  const ExpansionRange range{at("20261120T000000"), at("20261120T000010")};
  constexpr std::int64_t kFewSteps = 100'000;
  for (const char* rule :
       {"FREQ=SECONDLY", "FREQ=SECONDLY;COUNT=2000000000", "FREQ=SECONDLY;UNTIL=20261120T000009"}) {
    EXPECT_EQ(expanded(rule, start, 100, range, kFewSteps).size(), 10U) << rule;
  }
  EXPECT_EQ(expanded("FREQ=DAILY;COUNT=1000000000", start, 100, range, kFewSteps).size(), 1U);
  EXPECT_EQ(expanded("FREQ=MINUTELY;COUNT=30000000", start, 100, range, kFewSteps).size(), 1U);
  EXPECT_EQ(expanded("FREQ=MINUTELY;COUNT=10000000", start, 100, range, kFewSteps).size(), 0U);
  EXPECT_EQ(expanded("FREQ=DAILY;BYHOUR=0;BYMINUTE=0;BYSECOND=0,1,2,3,4,5;COUNT=1000000", start,
                     100, range, kFewSteps)
                .size(),
            6U);
}

TEST(RuleExpansion, RulesThatNeverMatchEndAtOnce) {
  const WallTime start = at("20261101T120000");
  const ExpansionRange range{at("20261116T000000"), at("20261130T000000")};
  for (const char* rule :
       {"FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=30", "FREQ=MONTHLY;BYMONTH=2;BYMONTHDAY=30",
        "FREQ=DAILY;BYMONTH=2;BYMONTHDAY=31;BYHOUR=0,1,2,3;BYMINUTE=0,1,2,3;BYSECOND=0,1,2,3",
        "FREQ=SECONDLY;BYMONTH=2;BYMONTHDAY=30", "FREQ=MINUTELY;BYMONTHDAY=31;BYMONTH=4;COUNT=5",
        "FREQ=YEARLY;BYWEEKNO=53;BYMONTH=6", "FREQ=MONTHLY;BYDAY=MO;BYSETPOS=9",
        "FREQ=HOURLY;INTERVAL=24;BYHOUR=3"}) {
    EXPECT_TRUE(expanded(rule, start, 100, range, 10'000).empty()) << rule;
  }
}

TEST(RuleExpansion, EndsWhenItsStepsAreSpent) {
  StepBudget budget(1000);
  const auto rule = parseRecurrenceRule("FREQ=SECONDLY;BYHOUR=9;COUNT=1000000000");
  int visits = 0;
  expandRule(*rule, 0, {}, {at("20261120T000000"), at("20261121T000000")}, budget, [&](WallTime) {
    ++visits;
    return true;
  });
  EXPECT_EQ(visits, 0);
  EXPECT_EQ(budget.left(), 0);
}

TEST(RuleExpansion, TheEdgesOfTimeAreNoTrouble) {
  EXPECT_EQ(textOf(expanded("FREQ=YEARLY", at("99970101T000000"), 100)),
            "99970101T000000 99980101T000000 99990101T000000");
  EXPECT_EQ(textOf(expanded("FREQ=WEEKLY;BYDAY=MO,SU", at("00010101T000000"), 3)),
            "00010101T000000 00010107T000000 00010108T000000");
  EXPECT_EQ(expanded("FREQ=DAILY;INTERVAL=1000000000", at("99991231T235959"), 10).size(), 1U);
  EXPECT_EQ(expanded("FREQ=YEARLY;INTERVAL=1000000000", at("00010101T000000"), 10).size(), 1U);
}

TEST(RecurrenceRule, WhatIsNoRuleIsNothing) {
  for (const char* text : {"", "FREQ=", "FREQ=SOMETIMES", "INTERVAL=2", "RSCALE=HEBREW;FREQ=YEARLY",
                           "FREQ=DAILY;BYHOUR=x", ";;;", "FREQ"}) {
    EXPECT_FALSE(parseRecurrenceRule(text)) << text;
  }
}

TEST(RecurrenceRule, ANonsensicalIntervalIsOne) {
  EXPECT_EQ(parseRecurrenceRule("FREQ=DAILY;INTERVAL=0")->interval, 1);
  EXPECT_EQ(parseRecurrenceRule("FREQ=DAILY;INTERVAL=-3")->interval, 1);
}

}  // namespace
}  // namespace orvane::ical
