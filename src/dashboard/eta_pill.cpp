#include "dashboard/eta_pill.h"

#include "dashboard/formatting.h"

namespace orvane {

View ETAPill::body(const CardEnvironment& environment) const {
  const auto& settings = environment.appearance;
  return text(shortETA(date, now))
      .font({.size = 11, .weight = FontWeight::bold, .monospacedDigits = true})
      .foreground(settings.shown(countdownColor(date, now, settings)))
      .lineLimit(1)
      .padding({4, 8, 4, 8})
      .background(filled(Shape::capsule(), settings.neutral().opacity(0.12)));
}

}  // namespace orvane
