#include "linux/reader/task_reading.h"

#include <gtest/gtest.h>

#include "linux/reader/item_reading.h"

namespace orvane::ical {
namespace {

constexpr std::int64_t kFewSteps = 300'000;

struct Reading {
  std::optional<wire::OpenTask> task;
  std::int64_t stepsLeft = 0;

  // "2026-11-20", or what is there instead.
  [[nodiscard]] std::string day() const {
    if (!task) return "none";
    if (!task->due) return "undated";
    const auto& due = *task->due;
    return std::to_string(*due.year) + "-" + std::to_string(*due.month) + "-" +
           std::to_string(*due.day);
  }
};

// Each text stands between BEGIN and END of one VTODO.
Reading reading(const std::vector<std::string>& texts) {
  SystemZones system;
  DefinedZones defined(system, 2060);
  FileZones zones(system, defined);
  const Zone local(3600);
  ItemFamily family;
  for (const std::string& text : texts) {
    auto item =
        readItem("BEGIN:VTODO\r\nUID:t\r\n" + text + "END:VTODO\r\n", TextEncoding::utf8, 1, zones);
    if (item->recurrenceId) {
      family.overrides.push_back(std::move(*item));
    } else {
      family.master = std::move(*item);
    }
  }
  StepBudget budget(kFewSteps);
  auto task = readTask(family, TimeReading(local), budget);
  return {std::move(task), budget.left()};
}

const std::string kDaily = "DUE:20260101T090000\r\nRRULE:FREQ=DAILY\r\n";

TEST(TaskReading, CompletedForAllItsFutureEndsSoon) {
  const Reading daily = reading(
      {kDaily, "RECURRENCE-ID;RANGE=THISANDFUTURE:20260101T090000\r\nSTATUS:COMPLETED\r\n"});
  EXPECT_EQ(daily.day(), "none");
  EXPECT_GT(daily.stepsLeft, kFewSteps / 2);
  const Reading fine =
      reading({"DUE:19700101T090000\r\nRRULE:FREQ=SECONDLY\r\n",
               "RECURRENCE-ID;RANGE=THISANDFUTURE:19700101T090000\r\nSTATUS:CANCELLED\r\n"});
  EXPECT_EQ(fine.day(), "none");
  EXPECT_GT(fine.stepsLeft, kFewSteps / 2);
}

TEST(TaskReading, JumpsToWhereItIsOpenAgain) {
  const Reading open =
      reading({"DUE:19700101T090000\r\nRRULE:FREQ=MINUTELY\r\n",
               "RECURRENCE-ID;RANGE=THISANDFUTURE:19700101T090000\r\nSTATUS:COMPLETED\r\n",
               "RECURRENCE-ID;RANGE=THISANDFUTURE:20261120T090000\r\nDUE:20261120T093000\r\n"
               "STATUS:NEEDS-ACTION\r\n"});
  EXPECT_EQ(open.day(), "2026-11-20");
  EXPECT_GT(open.stepsLeft, kFewSteps / 2);
}

TEST(TaskReading, WhatComesBeforeTheCompletedFutureIsOpen) {
  const std::string completed =
      "RECURRENCE-ID;RANGE=THISANDFUTURE:20260103T090000\r\nSTATUS:COMPLETED\r\n";
  EXPECT_EQ(reading({kDaily, completed}).day(), "2026-1-1");
  EXPECT_EQ(
      reading({kDaily, completed, "RECURRENCE-ID:20260101T090000\r\nSTATUS:COMPLETED\r\n"}).day(),
      "2026-1-2");
  EXPECT_EQ(reading({kDaily + "EXDATE:20260101T090000,20260102T090000\r\n", completed}).day(),
            "none");
  // Of occurrences behind the last change, one that is there by itself.
  EXPECT_EQ(reading({kDaily + "EXDATE:20260101T090000,20260102T090000\r\n", completed,
                     "RECURRENCE-ID:20260210T090000\r\nDUE:20260211T090000\r\n"})
                .day(),
            "2026-2-11");
}

TEST(TaskReading, ARuleThatNeverMatchesEndsSoon) {
  const Reading never =
      reading({"DUE:20260101T090000\r\nRRULE:FREQ=DAILY;BYMONTH=2;BYMONTHDAY=30\r\n"
               "EXDATE:20260101T090000\r\n"});
  EXPECT_EQ(never.day(), "none");
  EXPECT_GT(never.stepsLeft, 0);
}

TEST(TaskReading, WhatARuleTakesAwayForEverIsNotOpen) {
  for (const char* frequency : {"DAILY", "SECONDLY"}) {
    const std::string rule = std::string("RULE:FREQ=") + frequency + "\r\n";
    EXPECT_EQ(reading({"DUE:20260101T090000\r\nR" + rule + "EX" + rule}).day(), "none");
  }
  EXPECT_EQ(reading({kDaily + "EXRULE:FREQ=DAILY;COUNT=5\r\n"}).day(), "2026-1-6");
}

}  // namespace
}  // namespace orvane::ical
