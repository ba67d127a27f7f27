#include "linux/paint/symbol_masks.h"

#include <cmath>

#include "linux/paint/pixel_geometry.h"
#include "view/symbols.h"

namespace orvane::host {

namespace {

constexpr double largestSymbol = 2048;  // of the font, in pixels
// Texts stand on whole pixels; symbols stand beside them as exactly as this.
constexpr int partsOfPixel = 4;

void addPath(cairo_t* cr, const Path& path) {
  for (const PathCommand& command : path) {
    const auto& p = command.points;
    switch (command.verb) {
      case PathCommand::Verb::move:
        cairo_move_to(cr, p[0].x, p[0].y);
        break;
      case PathCommand::Verb::line:
        cairo_line_to(cr, p[0].x, p[0].y);
        break;
      case PathCommand::Verb::curve:
        cairo_curve_to(cr, p[0].x, p[0].y, p[1].x, p[1].y, p[2].x, p[2].y);
        break;
      case PathCommand::Verb::close:
        cairo_close_path(cr);
        break;
    }
  }
}

void drawPaths(cairo_t* cr, const SymbolDrawing& drawing, FontWeight weight) {
  cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
  cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
  cairo_set_line_width(cr, symbolLineWidth(weight));
  for (const Path& path : drawing.strokes) {
    addPath(cr, path);
    cairo_stroke(cr);
  }
  for (const Path& path : drawing.fills) {
    addPath(cr, path);
    cairo_fill(cr);
  }
}

}  // namespace

std::size_t SymbolMasks::KeyHash::operator()(const Key& key) const {
  std::size_t hash = hashWith(0, key.name);
  hash = hashWith(hash, key.size);
  hash = hashWith(hash, static_cast<int>(key.weight));
  hash = hashWith(hash, key.scale);
  return hashWith(hash, key.part);
}

SurfaceHandle SymbolMasks::make(const Key& key) {
  Font font;
  font.size = key.size;
  const Size size = symbolSize(key.name, font);
  const int width = static_cast<int>(std::ceil(size.width * key.scale));
  const double below = static_cast<double>(key.part) / partsOfPixel;
  const int height = static_cast<int>(std::ceil(size.height * key.scale + below));
  SurfaceHandle surface(cairo_image_surface_create(CAIRO_FORMAT_A8, width, height));
  const CairoHandle cr(cairo_create(surface.get()));
  cairo_translate(cr.get(), 0, below);
  const double unit = size.height * key.scale / symbolGridHeight;
  cairo_scale(cr.get(), unit, unit);
  drawPaths(cr.get(), symbolDrawing(key.name), key.weight);
  cairo_surface_flush(surface.get());
  return surface;
}

cairo_surface_t* SymbolMasks::mask(const Key& key) {
  if (const SurfaceHandle* known = masks_.find(key)) return known->get();
  SurfaceHandle made = make(key);
  const std::size_t cost =
      256 + static_cast<std::size_t>(cairo_image_surface_get_stride(made.get())) *
                cairo_image_surface_get_height(made.get());
  return masks_.insert(key, std::move(made), cost).get();
}

void SymbolMasks::draw(cairo_t* cr, const SymbolItem& symbol, const Rect& frame, double scale) {
  const double size = symbol.font.size * scale;
  if (!(size > 0 && size <= largestSymbol)) return;
  const int top = toPixels(frame.y + symbolDrop(symbol.font), scale * partsOfPixel);
  const int part = (top % partsOfPixel + partsOfPixel) % partsOfPixel;
  const Key key{symbol.name, symbol.font.size, symbol.font.weight, scale, part};
  const int row = (top - part) / partsOfPixel;
  cairo_mask_surface(cr, mask(key), toPixels(frame.x, scale), row);
}

}  // namespace orvane::host
