#include "linux/reader/listing.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "linux/reader/date_values.h"
#include "support/test_paths.h"

namespace orvane::ical {

namespace {

std::string text(double seconds) {
  const auto time = static_cast<Instant>(seconds);
  const auto date = civilDate(dayOf(time));
  const auto second = static_cast<int>(secondOfDay(time));
  char buffer[80];
  std::snprintf(buffer, sizeof buffer, "%04d-%02u-%02uT%02d:%02d:%02dZ",
                static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                static_cast<unsigned>(date.day()), second / 3600, second / 60 % 60, second % 60);
  return buffer;
}

std::string quoted(const std::optional<std::string>& title) {
  if (!title) return "(no title)";
  std::string quoted = "\"";
  for (const char letter : *title)
    quoted += letter == '\n' ? std::string("\\n") : std::string(1, letter);
  return quoted + "\"";
}

std::string dueText(const DateComponents& due) {
  char buffer[80];
  std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02d", *due.year, *due.month, *due.day);
  std::string text = buffer;
  if (due.hour) {
    std::snprintf(buffer, sizeof buffer, "T%02d:%02d:%02d", *due.hour, *due.minute, *due.second);
    text += buffer;
  }
  if (due.timeZone) text += " " + *due.timeZone;
  if (due.calendar != "gregorian") text += " (calendar: " + due.calendar.value_or("none") + ")";
  return text;
}

std::string line(const wire::EventOccurrence& event) {
  std::string line = "event " + text(event.start) + " " + text(event.end);
  if (event.isAllDay) line += " all-day";
  line += " " + event.uid;
  if (!event.recurrenceId.empty()) line += "/" + event.recurrenceId;
  return line + " " + quoted(event.title) + "\n";
}

std::string line(const wire::OpenTask& task) {
  return "task " + task.uid + " " + quoted(task.title) + ", " +
         (task.due ? "due " + dueText(*task.due) : "undated") + ", priority " +
         std::to_string(task.priority) + "\n";
}

std::string outcomeName(wire::ReadOutcome outcome) {
  switch (outcome) {
    case wire::ReadOutcome::good:
      return "good";
    case wire::ReadOutcome::unreadable:
      return "unreadable";
    case wire::ReadOutcome::notCalendar:
      return "not a calendar";
    case wire::ReadOutcome::tooLarge:
      return "too large";
  }
  return "?";
}

}  // namespace

std::string listing(const wire::FileAnswer& answer) {
  std::string text = outcomeName(answer.outcome);
  if (answer.holdsEvents) text += ", events";
  if (answer.holdsTasks) text += ", tasks";
  if (answer.calendarName) text += ", named " + quoted(answer.calendarName);
  text += "\n";
  auto events = answer.events;
  std::stable_sort(events.begin(), events.end(),
                   [](const auto& a, const auto& b) { return a.start < b.start; });
  for (const auto& event : events) text += line(event);
  for (const auto& task : answer.tasks) text += line(task);
  return text;
}

double instant(const std::string& text) {
  std::string digits;
  std::copy_if(text.begin(), text.end(), std::back_inserter(digits),
               [](char letter) { return letter != '-' && letter != ':'; });
  const auto value = parseDateValue(digits);
  if (!value || !value->isUtc) throw std::invalid_argument("no instant: " + text);
  return static_cast<double>(value->time);
}

std::string readData(const std::string& name) {
  std::ifstream file(testDataFolder() + "/" + name, std::ios::binary);
  if (!file) throw std::invalid_argument("no such file: " + name);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

}  // namespace orvane::ical
