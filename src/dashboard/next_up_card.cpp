#include "dashboard/next_up_card.h"

#include <utility>
#include <vector>

#include "dashboard/formatting.h"
#include "dashboard/glass_panel.h"
#include "dashboard/source_pill.h"

namespace orvane {
namespace {

constexpr VStack lines{HorizontalAlignment::leading, 8};

View secondaryText(std::string content, double size, const CardEnvironment& environment) {
  return text(std::move(content))
      .font({size, FontWeight::semibold})
      .foreground(environment.appearance.secondaryTextColor);
}

View header(const NextUpCard& card, const CardEnvironment& environment) {
  std::vector<View> parts{text("Next Up")
                              .font({13, FontWeight::bold})
                              .foreground(environment.appearance.secondaryTextColor)
                              .uppercase(),
                          spacer()};
  if (card.deadline) parts.push_back(SourcePill{card.deadline->source}.body(environment));
  return hstack({}, std::move(parts));
}

View countdown(const DashboardDeadline& deadline, Date now, const CardEnvironment& environment) {
  const auto& [settings, locale] = environment;
  const Font digits{56, FontWeight::bold, FontDesign::rounded, true};
  return vstack(
      lines, {text(countdownString(deadline.date, now))
                  .font(digits)
                  .foreground(settings.shown(countdownColor(deadline.date, now, settings)))
                  .lineLimit(1)
                  .minimumScaleFactor(0.45),
              text(deadline.title).font({18, FontWeight::semibold}).foreground(settings.neutral()),
              secondaryText(
                  deadline.subtitle + " at " + locale.dateAbbreviatedTimeShortened(deadline.date),
                  13, environment)});
}

View placeholder(const CardEnvironment& environment) {
  const Font digits{56, FontWeight::bold, FontDesign::standard, true};
  return vstack(
      lines,
      {text("--:--:--").font(digits).foreground(environment.appearance.neutral().opacity(0.45)),
       secondaryText("Add a time to an Apple Calendar event or Reminder", 15, environment)});
}

}  // namespace

View NextUpCard::body(const CardEnvironment& environment) const {
  const View content =
      vstack({HorizontalAlignment::leading, 12},
             {header(*this, environment),
              deadline ? countdown(*deadline, now, environment) : placeholder(environment)});
  return GlassPanel{content}.body(environment).named("NextUpCard");
}

}  // namespace orvane
