#include "linux/paint/text_drawing.h"

#include <fontconfig/fontconfig.h>
#include <pango/pangofc-font.h>

#include "linux/paint/pixel_geometry.h"

namespace orvane::host {

namespace {

// Fonts of pictures, which have no outlines.
bool hasPictures(PangoFont* font) {
  if (!PANGO_IS_FC_FONT(font)) return false;
  FcBool color = FcFalse;
  return FcPatternGetBool(pango_fc_font_get_pattern(PANGO_FC_FONT(font)), FC_COLOR, 0, &color) ==
             FcResultMatch &&
         color;
}

// Pictures bring their own colours; of the text's colour they take the opacity.
void drawPictures(cairo_t* cr, PangoFont* font, PangoGlyphString* glyphs, double opacity) {
  if (opacity >= 1) {
    pango_cairo_show_glyph_string(cr, font, glyphs);
    return;
  }
  const PatternHandle source(cairo_pattern_reference(cairo_get_source(cr)));
  cairo_push_group(cr);
  pango_cairo_show_glyph_string(cr, font, glyphs);
  cairo_pop_group_to_source(cr);
  cairo_paint_with_alpha(cr, opacity);
  cairo_set_source(cr, source.get());
}

// Outlines are filled rather than glyphs shown: cairo places glyphs on whole pixels only.
void drawRun(cairo_t* cr, PangoGlyphItem* run, double opacity) {
  PangoFont* font = run->item->analysis.font;
  if (hasPictures(font)) {
    drawPictures(cr, font, run->glyphs, opacity);
    return;
  }
  pango_cairo_glyph_string_path(cr, font, run->glyphs);
  cairo_fill(cr);
}

double startOf(PangoLayoutLine* line, double frameWidth) {
  if (pango_layout_line_get_resolved_direction(line) != PANGO_DIRECTION_RTL) return 0;
  PangoRectangle logical;
  pango_layout_line_get_extents(line, nullptr, &logical);
  return frameWidth - static_cast<double>(logical.width) / PANGO_SCALE;
}

}  // namespace

void drawLine(cairo_t* cr, PangoLayoutLine* line, double opacity) {
  int x = 0;
  for (GSList* link = line->runs; link; link = link->next) {
    auto* run = static_cast<PangoGlyphItem*>(link->data);
    cairo_move_to(cr, static_cast<double>(x) / PANGO_SCALE,
                  -static_cast<double>(run->y_offset) / PANGO_SCALE);
    drawRun(cr, run, opacity);
    cairo_new_path(cr);
    x += pango_glyph_string_get_width(run->glyphs);
  }
}

void drawText(cairo_t* cr, Typesetter& typesetter, const TextItem& text, const Rect& frame,
              double scale) {
  const LayoutHandle layout = typesetter.layout(text.text, text.style, frame.width);
  const double lineHeight = typesetter.lineMetrics(text.style.font).height();
  double baseline = frame.y + text.firstBaseline;
  const int lines = pango_layout_get_line_count(layout.get());
  for (int index = 0; index < lines; ++index, baseline += lineHeight) {
    PangoLayoutLine* line = pango_layout_get_line_readonly(layout.get(), index);
    const SavedState saved(cr);
    cairo_translate(cr, toPixels(frame.x + startOf(line, frame.width), scale),
                    toPixels(baseline, scale));
    cairo_scale(cr, scale, scale);
    drawLine(cr, line, text.color.opacity());
  }
}

}  // namespace orvane::host
