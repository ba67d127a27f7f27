#include "dashboard/row_parts.h"

#include <utility>
#include <vector>

#include "dashboard/eta_pill.h"

namespace orvane {

View rowTitle(const std::string& title, std::optional<Date> date, Date now,
              const CardEnvironment& environment) {
  std::vector<View> parts{text(title)
                              .font({15, FontWeight::semibold})
                              .foreground(environment.appearance.neutral())
                              .lineLimit(2),
                          spacer()};
  if (date) parts.push_back(ETAPill{*date, now}.body(environment));
  return hstack({VerticalAlignment::firstTextBaseline, 8}, std::move(parts));
}

View rowDetail(const std::string& detail, const CardEnvironment& environment) {
  return text(detail)
      .font({12, FontWeight::semibold})
      .foreground(environment.appearance.secondaryTextColor)
      .lineLimit(2);
}

View rowTexts(View title, View detail) {
  return vstack({HorizontalAlignment::leading, 6}, {std::move(title), std::move(detail)});
}

}  // namespace orvane
