#include "settings/settings_view_preview.h"

#include <cmath>

#include "dashboard/card_environment.h"
#include "dashboard/next_up_card.h"

namespace orvane {
namespace {

constexpr Size previewSize{420, 240};
constexpr double cardWidth = 372;
// Far enough that the digits have the theme's own colour.
constexpr double sampleCountdown = 2 * 3600 + 24 * 60 + 36;

// Something bright and something dark to see through the glass.
View desktopPicture() {
  const LinearGradient dusk{{Color::srgb(0.98, 0.72, 0.48), Color::srgb(0.55, 0.36, 0.62),
                             Color::srgb(0.10, 0.15, 0.34)}};
  return filled(Shape::rectangle(), dusk);
}

DashboardDeadline sampleDeadline(Date now) {
  const Date hour{(std::floor((now.secondsSince1970 + sampleCountdown) / 3600) + 1) * 3600};
  return {"event-preview", "Team review", "Work", hour, DashboardDeadlineSource::calendar};
}

}  // namespace

FormPreview nextUpPreview(const DashboardAppearance& appearance, const Locale& locale, Date now) {
  const DashboardDeadline deadline = sampleDeadline(now);
  const NextUpCard card{deadline, deadline.date + -sampleCountdown};
  const View panel = card.body({appearance, locale}).frame(cardWidth, std::nullopt);
  const View picture = zstack(Alignment::center(), {desktopPicture(), panel})
                           .frame(previewSize.width, previewSize.height)
                           .clipped(Shape::roundedRectangle(10, true));
  return {picture, previewSize};
}

}  // namespace orvane
