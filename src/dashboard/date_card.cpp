#include "dashboard/date_card.h"

#include "dashboard/glass_panel.h"

namespace orvane {

std::string DateCard::refreshText(const Locale& locale) const {
  if (!lastRefreshDate) return "Syncing with Apple Calendar and Reminders";
  return "Synced " + locale.timeShortened(*lastRefreshDate);
}

View DateCard::body(Date today, const CardEnvironment& environment) const {
  const auto& [settings, locale] = environment;
  const Color secondary = settings.secondaryTextColor;
  const View weekday = text(locale.weekdayWide(today))
                           .font({21, FontWeight::semibold, FontDesign::rounded})
                           .foreground(settings.neutral().opacity(0.86));
  const View date = text(locale.dateLong(today))
                        .font({48, FontWeight::bold})
                        .foreground(settings.neutral())
                        .lineLimit(1)
                        .minimumScaleFactor(0.55);
  const View synced = hstack(
      {},
      {symbol("arrow.triangle.2.circlepath").font({12, FontWeight::semibold}).foreground(secondary),
       text(refreshText(locale))
           .font({13, FontWeight::semibold, FontDesign::rounded})
           .foreground(secondary)});
  const View content = vstack({HorizontalAlignment::leading, 12}, {weekday, date, synced});
  return GlassPanel{content}.body(environment).named("DateCard");
}

}  // namespace orvane
