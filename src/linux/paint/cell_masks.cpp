#include "linux/paint/cell_masks.h"

#include <string_view>
#include <utility>

#include "linux/paint/plain_text.h"

namespace orvane::host {

std::size_t CellDrawing::MaskHash::operator()(const MaskKey& key) const {
  std::size_t hash = hashWith(FontHash{}(key.font), key.character);
  hash = hashWith(hash, key.cell);
  return hashWith(hash, key.scale);
}

LineMask CellDrawing::makeMask(const MaskKey& key) {
  const LayoutHandle layout = typesetter_.layout(key.character, {key.font}, unlimitedWidth);
  const double start = (key.cell - typesetter_.advance(key.character, key.font)) / 2;
  return makeLineMask(pango_layout_get_line_readonly(layout.get(), 0), start, key.scale);
}

const LineMask& CellDrawing::mask(const MaskKey& key) {
  if (const LineMask* known = masks_.find(key)) return *known;
  LineMask made = makeMask(key);
  const std::size_t cost = 256 + static_cast<std::size_t>(made.extents.width) *
                                     static_cast<std::size_t>(made.extents.height);
  return masks_.insert(key, std::move(made), cost);
}

void CellDrawing::drawCell(cairo_t* cr, const MaskKey& key, const Rect& cell, double baseline,
                           const PixelRect& area) {
  const PixelRect place = pixelsCovering(cell, key.scale);
  if (intersectionOf(place, area).isEmpty()) return;
  const LineMask& glyph = mask(key);
  const PixelRect ink =
      movedBy(glyph.extents, toPixels(cell.x, key.scale), toPixels(baseline, key.scale));
  const PixelRect shown = intersectionOf(ink, place);
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
