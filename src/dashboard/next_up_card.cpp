#include "dashboard/next_up_card.h"

#include <utility>

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

View digits(const DashboardDeadline& deadline, Date now, const DashboardAppearance& settings) {
  const Font font{56, FontWeight::bold, FontDesign::rounded, true};
  return text(countdownString(deadline.date, now))
      .font(font)
      .foreground(settings.shown(countdownColor(deadline.date, now, settings)))
      .lineLimit(1)
      .minimumScaleFactor(0.45);
}

View noDigits(const DashboardAppearance& settings) {
  const Font font{56, FontWeight::bold, FontDesign::standard, true};
  return text("--:--:--").font(font).foreground(settings.neutral().opacity(0.45));
}

std::vector<View> titleAndDate(const DashboardDeadline& deadline,
                               const CardEnvironment& environment) {
  const auto& [settings, locale] = environment;
  return {
      text(deadline.title).font({18, FontWeight::semibold}).foreground(settings.neutral()),
      secondaryText(deadline.subtitle + " at " + locale.dateAbbreviatedTimeShortened(deadline.date),
                    13, environment)};
}

}  // namespace

NextUpCard::Still NextUpCard::still(const CardEnvironment& environment) const {
  Still still{GlassPanel::glass(environment), header(*this, environment), {}};
  if (deadline) {
    still.below = titleAndDate(*deadline, environment);
  } else {
    still.below = {
        secondaryText("Add a time to an Apple Calendar event or Reminder", 15, environment)};
  }
  return still;
}

View NextUpCard::body(const CardEnvironment& environment) const {
  return body(environment, still(environment));
}

View NextUpCard::body(const CardEnvironment& environment, const Still& still) const {
  const auto& settings = environment.appearance;
  std::vector<View> countdown{deadline ? digits(*deadline, now, settings) : noDigits(settings)};
  countdown.insert(countdown.end(), still.below.begin(), still.below.end());
  const View content = vstack({HorizontalAlignment::leading, 12},
                              {still.header, vstack(lines, std::move(countdown))});
  return GlassPanel{content}.body(still.glass).named("NextUpCard");
}

}  // namespace orvane
