#include "linux/calendars/account_questions.h"

#include <algorithm>
#include <utility>

namespace orvane::host {

bool AccountQuestions::ask(double start, double end, const std::string& localTimeZone) {
  const std::lock_guard lock(mutex_);
  const auto& calendars = answers_->calendars;
  const bool isCutDown = std::any_of(calendars.begin(), calendars.end(), [](const auto& calendar) {
    return calendar.item && calendar.item->isForShownOnly;
  });
  Place place{windowFor(place_.window, start, end, localTimeZone), {start, end}};
  const bool isOther = place.window != place_.window || (isCutDown && place.shown != place_.shown);
  place_ = std::move(place);
  return isOther;
}

}  // namespace orvane::host
