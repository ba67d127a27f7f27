#include "dashboard/time_rail.h"

namespace orvane {
namespace {

// "12:45 PM" fits at full size; longer ways to say the time shrink a little.
constexpr double textWidth = 60;

}  // namespace

View TimeRail::body(const CardEnvironment& environment) const {
  const View time = orvane::text(text)
                        .font({.size = 12, .weight = FontWeight::bold, .monospacedDigits = true})
                        .foreground(environment.appearance.neutral().opacity(0.78))
                        .lineLimit(1)
                        .minimumScaleFactor(0.75)
                        .frame(textWidth, std::nullopt, Alignment::leading());
  const View bar =
      filled(Shape::roundedRectangle(1), environment.appearance.shown(color).opacity(0.55))
          .frame(2, 28);
  return hstack({.spacing = 8}, {time, bar});
}

}  // namespace orvane
