#include "linux/paint/cell_masks.h"

#include <cmath>
#include <string_view>

#include "linux/paint/plain_text.h"
#include "linux/paint/text_drawing.h"

namespace orvane::host {

namespace {

// Pixels that a line's ink may touch when it starts at `start` points on the baseline.
PixelRect inkOf(PangoLayoutLine* line, double start, double scale) {
  PangoRectangle ink;
  pango_layout_line_get_extents(line, &ink, nullptr);
  if (ink.width <= 0 || ink.height <= 0) return {};
  const auto points = [](int units) { return static_cast<double>(units) / PANGO_SCALE; };
  const Rect rect{start + points(ink.x), points(ink.y), points(ink.width), points(ink.height)};
  // Fitting outlines to pixels may move them by up to one.
  return grownBy(pixelsCovering(rect, scale), 1);
}

}  // namespace

std::size_t CellDrawing::MaskHash::operator()(const MaskKey& key) const {
  std::size_t hash = hashWith(FontHash{}(key.font), key.character);
  hash = hashWith(hash, key.cell);
  return hashWith(hash, key.scale);
}

CellDrawing::Mask CellDrawing::makeMask(const MaskKey& key) {
  const LayoutHandle layout = typesetter_.layout(key.character, {key.font}, unlimitedWidth);
  PangoLayoutLine* line = pango_layout_get_line_readonly(layout.get(), 0);
  const double start = (key.cell - typesetter_.advance(key.character, key.font)) / 2;
  const PixelRect extents = inkOf(line, start, key.scale);
  if (extents.isEmpty()) return {};
  SurfaceHandle surface(cairo_image_surface_create(CAIRO_FORMAT_A8, extents.width, extents.height));
  const CairoHandle cr(cairo_create(surface.get()));
  cairo_translate(cr.get(), -extents.x, -extents.y);
  cairo_scale(cr.get(), key.scale, key.scale);
  cairo_translate(cr.get(), start, 0);
  drawLine(cr.get(), line, 1);
  cairo_surface_flush(surface.get());
  return {std::move(surface), extents};
}

const CellDrawing::Mask& CellDrawing::mask(const MaskKey& key) {
  if (const Mask* known = masks_.find(key)) return *known;
  Mask made = makeMask(key);
  const std::size_t cost = 256 + std::size_t(made.extents.width) * made.extents.height;
  return masks_.insert(key, std::move(made), cost);
}

void CellDrawing::drawCell(cairo_t* cr, const MaskKey& key, const Rect& cell, double baseline,
                           const PixelRect& area) {
  const PixelRect place = pixelsCovering(cell, key.scale);
  if (meeting(place, area).isEmpty()) return;
  const Mask& glyph = mask(key);
  const PixelRect ink =
      movedBy(glyph.extents, toPixels(cell.x, key.scale), toPixels(baseline, key.scale));
  const PixelRect shown = meeting(ink, place);
  if (!glyph.surface || shown.isEmpty()) return;
  if (shown == ink) {
    cairo_mask_surface(cr, glyph.surface.get(), ink.x, ink.y);
    return;
  }
  // Ink that stood out of its cell would stay behind when only the cell is drawn again.
  const SavedState saved(cr);
  cairo_rectangle(cr, shown.x, shown.y, shown.width, shown.height);
  cairo_clip(cr);
  cairo_mask_surface(cr, glyph.surface.get(), ink.x, ink.y);
}

void CellDrawing::draw(cairo_t* cr, const TextItem& text, const Rect& frame, double scale,
                       const PixelRect& area) {
  const std::string plain = plainText(text.text);
  std::string_view rest = plain;
  Rect cell = frame;
  for (const double advance : text.cells) {
    if (rest.empty()) return;
    cell.width = advance;
    const MaskKey key{std::string(takeCharacter(rest)), text.style.font, advance, scale};
    drawCell(cr, key, cell, frame.y + text.firstBaseline, area);
    cell.x += advance;
  }
}

}  // namespace orvane::host
