#include "dashboard/empty_state_view.h"

#include "view/text_measurer.h"

namespace orvane {

View EmptyStateView::body(const CardEnvironment& environment) const {
  const auto& settings = environment.appearance;
  const View image = symbol(systemImage)
                         .font({18, FontWeight::semibold})
                         .foreground(settings.secondaryTextColor)
                         .frame(24, std::nullopt);
  const View texts = vstack(
      {HorizontalAlignment::leading, 5},
      {text(title).font({15, FontWeight::semibold}).foreground(settings.neutral().opacity(0.9)),
       text(detail)
           .font({13, FontWeight::semibold})
           .foreground(settings.secondaryTextColor)
           .lineLimit(2)});
  return hstack({VerticalAlignment::top}, {image, texts})
      .frame({.maxWidth = unlimitedWidth, .alignment = Alignment::leading()})
      .padding({6, 0, 6, 0});
}

}  // namespace orvane
