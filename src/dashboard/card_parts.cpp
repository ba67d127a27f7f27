#include "dashboard/card_parts.h"

#include "dashboard/glass_panel.h"

namespace orvane {

View listCard(const PanelHeader& header, View list, const CardEnvironment& environment) {
  return GlassPanel{
      vstack({HorizontalAlignment::leading, 14}, {header.body(environment), std::move(list)})}
      .body(environment);
}

}  // namespace orvane
