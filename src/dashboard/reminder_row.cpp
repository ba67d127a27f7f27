#include "dashboard/reminder_row.h"

#include "dashboard/row_parts.h"

namespace orvane {

Color ReminderRow::priorityColor(const DashboardAppearance& settings) const {
  const auto priority = reminder.priority;
  if (priority >= 1 && priority <= 4) return Color::red();
  if (priority == 5) return Color::orange();
  if (priority >= 6 && priority <= 9) return Color::yellow();
  return settings.neutral().opacity(0.9);
}

View ReminderRow::body(const CardEnvironment& environment) const {
  const auto& appearance = environment.appearance;
  const Color ringColor = appearance.shown(priorityColor(appearance)).opacity(0.9);
  const View ring = stroked(Shape::circle(), ringColor, 2.2).frame(15, 15).padding({3, 0, 0, 0});
  const std::string due = reminder.dueDate
                              ? environment.locale.dateAbbreviatedTimeShortened(*reminder.dueDate)
                              : "No due date";
  const View detail =
      hstack({}, {rowDetail(reminder.calendarTitle, environment), rowDetail(due, environment)});
  return hstack(
      {VerticalAlignment::top, rowLeadingSpacing},
      {ring, rowTexts(rowTitle(reminder.title, reminder.dueDate, now, environment), detail)});
}

}  // namespace orvane
