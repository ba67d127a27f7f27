#include "linux/paint/text_drawing.h"

#include "linux/paint/line_mask.h"
#include "linux/paint/pango_units.h"
#include "linux/paint/pixel_geometry.h"

namespace orvane::host {

namespace {

double startOf(PangoLayoutLine* line, double frameWidth) {
  if (pango_layout_line_get_resolved_direction(line) != PANGO_DIRECTION_RTL) return 0;
  PangoRectangle logical;
  pango_layout_line_get_extents(line, nullptr, &logical);
  return frameWidth - toPoints(logical.width);
}

void drawLine(cairo_t* cr, PangoLayoutLine* line, PixelPoint start, double scale, double opacity) {
  const LineMask mask = makeLineMask(line, 0, scale);
  if (!mask.surface) return;
  cairo_mask_surface(cr, mask.surface.get(), start.x + mask.extents.x, start.y + mask.extents.y);
  const SavedState saved(cr);
  cairo_translate(cr, start.x, start.y);
  cairo_scale(cr, scale, scale);
  drawPictures(cr, line, opacity);
}

}  // namespace

void drawText(cairo_t* cr, Typesetter& typesetter, const TextItem& text, const Rect& frame,
              double scale) {
  const LayoutHandle layout = typesetter.layout(text.text, text.style, frame.width);
  const double lineHeight = typesetter.lineMetrics(text.style.font).height();
  double baseline = frame.y + text.firstBaseline;
  const int lines = pango_layout_get_line_count(layout.get());
  for (int index = 0; index < lines; ++index, baseline += lineHeight) {
    PangoLayoutLine* line = pango_layout_get_line_readonly(layout.get(), index);
    const PixelPoint start{toPixels(frame.x + startOf(line, frame.width), scale),
                           toPixels(baseline, scale)};
    drawLine(cr, line, start, scale, text.color.opacity());
  }
}

}  // namespace orvane::host
