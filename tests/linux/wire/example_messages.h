#pragma once

#include "linux/wire/reader_messages.h"

namespace orvane::wire {

inline ReadRequest exampleRequest() {
  return {.windowStart = 1795219200,
          .windowEnd = 1795824000.5,
          .localTimeZone = "Europe/Berlin",
          .paths = {"/calendars/work/a.ics", "", "/calendars/\xff\n.ics"},
          .shownStart = 1795305600,
          .shownEnd = 1795392000};
}

inline FileAnswer answerFor(const std::string& path, ReadOutcome outcome = ReadOutcome::good) {
  FileAnswer answer;
  answer.path = path;
  answer.outcome = outcome;
  return answer;
}

inline DateComponents exampleDay() {
  DateComponents day;
  day.calendar = "gregorian";
  day.year = 2026;
  day.month = 11;
  day.day = 20;
  return day;
}

inline DateComponents exampleMoment() {
  DateComponents moment = exampleDay();
  moment.timeZone = "Europe/Berlin";
  moment.hour = 9;
  moment.minute = 41;
  moment.second = 0;
  return moment;
}

inline FileAnswer exampleAnswer() {
  FileAnswer answer = answerFor("/calendars/work/a.ics");
  answer.calendarName = "Work";
  answer.holdsEvents = true;
  answer.holdsTasks = true;
  answer.events = {{"1", "", "Plan", 1, 2.5, false}, {"2", "20261120", std::nullopt, -3, 0, true}};
  answer.tasks = {{"3", "", exampleDay(), -1},
                  {"4", std::nullopt, exampleMoment(), 9},
                  {"5", "Undated", std::nullopt, 0}};
  answer.isForShownOnly = true;
  return answer;
}

}  // namespace orvane::wire
