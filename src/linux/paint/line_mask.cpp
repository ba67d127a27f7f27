#include "linux/paint/line_mask.h"

#include <fontconfig/fontconfig.h>
#include <pango/pangofc-font.h>

#include <algorithm>
#include <utility>

#include "linux/paint/pango_units.h"

namespace orvane::host {

namespace {

// Of the part of a line that is drawn, in pixels: more than any screen shows.
constexpr int longestMask = 16384;

// Fonts of pictures, which have no outlines.
bool hasPictures(PangoFont* font) {
  if (!PANGO_IS_FC_FONT(font)) return false;
  FcBool color = FcFalse;
  return FcPatternGetBool(pango_fc_font_get_pattern(PANGO_FC_FONT(font)), FC_COLOR, 0, &color) ==
             FcResultMatch &&
         color;
}

// Calls `draw` with each run, and the current point where it begins.
template <typename Draw>
void forEachRun(cairo_t* cr, PangoLayoutLine* line, Draw draw) {
  int x = 0;
  for (GSList* link = line->runs; link; link = link->next) {
    auto* run = static_cast<PangoGlyphItem*>(link->data);
    cairo_move_to(cr, toPoints(x), -toPoints(run->y_offset));
    draw(run->item->analysis.font, run->glyphs);
    cairo_new_path(cr);
    x += pango_glyph_string_get_width(run->glyphs);
  }
}

// Outlines are filled rather than glyphs shown: cairo places glyphs on whole pixels only.
void fillOutlines(cairo_t* cr, PangoLayoutLine* line) {
  forEachRun(cr, line, [cr](PangoFont* font, PangoGlyphString* glyphs) {
    if (hasPictures(font)) return;
    pango_cairo_glyph_string_path(cr, font, glyphs);
    cairo_fill(cr);
  });
}

PixelRect inkOf(PangoLayoutLine* line, double start, double scale) {
  PangoRectangle ink;
  pango_layout_line_get_extents(line, &ink, nullptr);
  if (ink.width <= 0 || ink.height <= 0) return {};
  const Rect rect{start + toPoints(ink.x), toPoints(ink.y), toPoints(ink.width),
                  toPoints(ink.height)};
  // Fitting outlines to pixels may move them by up to one.
  PixelRect pixels = grownBy(pixelsCovering(rect, scale), 1);
  pixels.width = std::min(pixels.width, longestMask);
  pixels.height = std::min(pixels.height, longestMask);
  return pixels;
}

}  // namespace

LineMask makeLineMask(PangoLayoutLine* line, double start, double scale) {
  const PixelRect extents = inkOf(line, start, scale);
  if (extents.isEmpty()) return {};
  SurfaceHandle surface(cairo_image_surface_create(CAIRO_FORMAT_A8, extents.width, extents.height));
  const CairoHandle cr(cairo_create(surface.get()));
  cairo_translate(cr.get(), -extents.x, -extents.y);
  cairo_scale(cr.get(), scale, scale);
  cairo_translate(cr.get(), start, 0);
  fillOutlines(cr.get(), line);
  cairo_surface_flush(surface.get());
  return {std::move(surface), extents};
}

void drawPictures(cairo_t* cr, PangoLayoutLine* line, double opacity) {
  forEachRun(cr, line, [&](PangoFont* font, PangoGlyphString* glyphs) {
    if (!hasPictures(font)) return;
    // Pictures bring their own colours; of the text's colour they take the opacity.
    const SavedState saved(cr);
    cairo_push_group(cr);
    pango_cairo_show_glyph_string(cr, font, glyphs);
    cairo_pop_group_to_source(cr);
    cairo_paint_with_alpha(cr, opacity);
  });
}

}  // namespace orvane::host
