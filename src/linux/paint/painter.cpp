#include "linux/paint/painter.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "linux/paint/display_list_drawing.h"
#include "linux/paint/handles.h"
#include "linux/paint/pixel_geometry.h"
#include "linux/paint/pixel_surface.h"

namespace orvane::host {

namespace {

// The background of a picture: what lies under it, or nothing.
void clear(cairo_t* cr, const PaintTarget& target) {
  const SavedState saved(cr);
  cairo_set_operator(cr, CAIRO_OPERATOR_SOURCE);
  if (!target.backdrop) {
    cairo_set_source_rgba(cr, 0, 0, 0, 0);
    cairo_paint(cr);
    return;
  }
  const SurfaceHandle backdrop = surfaceOver(*target.backdrop);
  cairo_set_source_surface(cr, backdrop.get(), target.origin.x, target.origin.y);
  cairo_pattern_set_filter(cairo_get_source(cr), CAIRO_FILTER_NEAREST);
  cairo_paint(cr);
}

class CairoPainter final : public Painter {
 public:
  explicit CairoPainter(std::shared_ptr<Typesetter> typesetter)
      : typesetter_(std::move(typesetter)), drawing_(*typesetter_) {}

  void paint(const DisplayList& list, const PaintTarget& target,
             const std::vector<PixelRect>& damage) override;

 private:
  std::shared_ptr<Typesetter> typesetter_;
  DisplayListDrawing drawing_;
};

void CairoPainter::paint(const DisplayList& list, const PaintTarget& target,
                         const std::vector<PixelRect>& damage) {
  const PixelBuffer& pixels = target.pixels;
  if (!pixels.data || !(target.scale > 0) || !std::isfinite(target.scale)) return;
  const PixelRect buffer{target.origin.x, target.origin.y, pixels.width, pixels.height};
  std::vector<PixelRect> areas;
  areas.reserve(damage.size());
  for (const PixelRect& rect : damage) areas.push_back(intersectionOf(rect, buffer));

  const SurfaceHandle surface = surfaceOver(pixels);
  const CairoHandle cr(cairo_create(surface.get()));
  cairo_translate(cr.get(), -target.origin.x, -target.origin.y);
  // One after the other, since a temporary picture spans all of what it is limited to.
  for (const PixelRect& area : apart(std::move(areas))) {
    const SavedState saved(cr.get());
    cairo_rectangle(cr.get(), area.x, area.y, area.width, area.height);
    cairo_clip(cr.get());
    clear(cr.get(), target);
    drawing_.draw(cr.get(), list, target.scale, area);
  }
  cairo_surface_flush(surface.get());
}

}  // namespace

std::unique_ptr<Painter> makePainter(std::shared_ptr<Typesetter> typesetter) {
  return std::make_unique<CairoPainter>(std::move(typesetter));
}

}  // namespace orvane::host
