#include "dashboard/source_pill.h"

namespace orvane {

View SourcePill::body(const CardEnvironment& environment) const {
  const bool isCalendar = source == DashboardDeadlineSource::calendar;
  const Color neutral = environment.appearance.neutral();
  const Font font{11, FontWeight::bold};
  const Color color = neutral.opacity(0.82);
  return hstack(
             {.spacing = 5},
             {symbol(isCalendar ? "calendar" : "checklist").font(font).foreground(color),
              text(isCalendar ? "Calendar" : "Reminder").font(font).foreground(color).lineLimit(1)})
      .padding({5, 9, 5, 9})
      .background(filled(Shape::capsule(), neutral.opacity(0.12)));
}

}  // namespace orvane
