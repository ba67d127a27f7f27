#include "dashboard/panel_header.h"

namespace orvane {

View PanelHeader::body(const CardEnvironment& environment) const {
  const Color neutral = environment.appearance.neutral();
  const View badge = text(environment.locale.integer(count))
                         .font({14, FontWeight::bold})
                         .foreground(neutral.opacity(0.86))
                         .lineLimit(1)
                         .padding({0, 6, 0, 6})
                         .frame({.minWidth = 32})
                         .background(filled(Shape::capsule(), neutral.opacity(0.13)));
  return hstack({},
                {text(title).font({20, FontWeight::bold}).foreground(neutral), spacer(), badge});
}

}  // namespace orvane
