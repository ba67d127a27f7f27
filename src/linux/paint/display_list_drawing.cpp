#include "linux/paint/display_list_drawing.h"

#include <algorithm>
#include <optional>

#include "linux/paint/text_drawing.h"

namespace orvane::host {

namespace {

void setSource(cairo_t* cr, const Color& color) {
  const SRGB c = color.resolved();
  cairo_set_source_rgba(cr, c.red, c.green, c.blue, c.opacity);
}

void clipTo(cairo_t* cr, const PixelRect& rect) {
  cairo_rectangle(cr, rect.x, rect.y, rect.width, rect.height);
  cairo_clip(cr);
}

// The index of the end that matches the beginning at `begin`; the list's size without one.
std::size_t groupEnd(const DisplayList& list, std::size_t begin) {
  int depth = 0;
  for (std::size_t i = begin; i < list.size(); ++i) {
    if (std::holds_alternative<GroupBegin>(list[i].content)) ++depth;
    if (std::holds_alternative<GroupEnd>(list[i].content) && --depth == 0) return i;
  }
  return list.size();
}

// At least a pixel wide, and a whole number of them, so that straight lines are crisp.
double lineWidthOf(const StrokeItem& stroke, double scale) {
  if (stroke.shape.kind == Shape::Kind::circle) return std::max(stroke.lineWidth * scale, 1.0);
  return std::max(toPixels(stroke.lineWidth, scale), 1);
}

}  // namespace

void DisplayListDrawing::draw(cairo_t* cr, const DisplayList& list, double scale,
                              const PixelRect& area) {
  drawItems({cr, scale, area}, list, {0, list.size()});
}

void DisplayListDrawing::drawItems(const Canvas& canvas, const DisplayList& list, Range range) {
  for (std::size_t i = range.first; i < range.last; ++i) {
    if (!std::holds_alternative<GroupBegin>(list[i].content)) {
      drawItem(canvas, list[i]);
      continue;
    }
    const std::size_t end = std::min(groupEnd(list, i), range.last);
    drawGroup(canvas, list, {i, end});
    i = end;
  }
}

void DisplayListDrawing::drawItem(const Canvas& canvas, const DisplayItem& item) {
  if (item.opacity <= 0) return;
  const PixelRect touched = pixelsCovering(item.bounds(), canvas.scale);
  const PixelRect area = meeting(touched, canvas.area);
  if (area.isEmpty()) return;
  // Nothing is drawn beyond an item's bounds, since nothing beyond them is drawn again with it.
  const SavedState saved(canvas.cr);
  if (area != canvas.area) clipTo(canvas.cr, area);
  const Canvas limited{canvas.cr, canvas.scale, area};
  std::visit([&](const auto& content) { drawContent(limited, item.frame, content); }, item.content);
}

void DisplayListDrawing::drawGroup(const Canvas& canvas, const DisplayList& list, Range range) {
  const DisplayItem& item = list[range.first];
  const auto& group = std::get<GroupBegin>(item.content);
  if (item.opacity <= 0 || group.groupOpacity <= 0) return;
  const Range inside{range.first + 1, range.last};
  std::optional<Outline> clip;
  if (group.clip) clip = outlineOf(*group.clip, item.frame, canvas.scale);
  if (clip && contains(interiorOf(*clip), canvas.area)) clip.reset();
  if (!clip && group.groupOpacity >= 1) return drawItems(canvas, list, inside);

  PixelRect touched;
  for (std::size_t i = inside.first; i < inside.last; ++i)
    touched = joining(touched, pixelsCovering(list[i].bounds(), canvas.scale));
  PixelRect area = meeting(touched, canvas.area);
  if (clip) area = meeting(area, coveringPixels(*clip));
  if (area.isEmpty()) return;

  const SavedState saved(canvas.cr);
  clipTo(canvas.cr, area);
  cairo_push_group(canvas.cr);
  drawItems({canvas.cr, canvas.scale, area}, list, inside);
  cairo_pop_group_to_source(canvas.cr);
  if (clip) {
    addPath(canvas.cr, *clip);
    cairo_clip(canvas.cr);
  }
  cairo_paint_with_alpha(canvas.cr, std::min(group.groupOpacity, 1.0));
}

void DisplayListDrawing::drawContent(const Canvas& canvas, const Rect& frame,
                                     const TextItem& text) {
  setSource(canvas.cr, text.color);
  if (text.cells.empty())
    drawText(canvas.cr, typesetter_, text, frame, canvas.scale);
  else
    cells_.draw(canvas.cr, text, frame, canvas.scale, canvas.area);
}

void DisplayListDrawing::drawContent(const Canvas& canvas, const Rect& frame,
                                     const SymbolItem& symbol) {
  setSource(canvas.cr, symbol.color);
  symbols_.draw(canvas.cr, symbol, frame, canvas.scale);
}

void DisplayListDrawing::drawContent(const Canvas& canvas, const Rect& frame,
                                     const FillItem& fill) {
  const Outline outline = outlineOf(fill.shape, frame, canvas.scale);
  if (const auto* gradient = std::get_if<LinearGradient>(&fill.fill)) {
    gradients_.fill(canvas.cr, *gradient, outline, canvas.area);
    return;
  }
  const auto* material = std::get_if<Material>(&fill.fill);
  setSource(canvas.cr, material ? material->tint : std::get<Color>(fill.fill));
  fillOutline(canvas.cr, outline, canvas.area);
}

void DisplayListDrawing::drawContent(const Canvas& canvas, const Rect& frame,
                                     const StrokeItem& stroke) {
  const Outline outline = outlineOf(stroke.shape, frame, canvas.scale);
  const double width = lineWidthOf(stroke, canvas.scale);
  if (contains(interiorOf(insetBy(outline, width)), canvas.area)) return;
  setSource(canvas.cr, stroke.color);
  cairo_set_line_width(canvas.cr, width);
  addPath(canvas.cr, insetBy(outline, width / 2));
  cairo_stroke(canvas.cr);
}

void DisplayListDrawing::drawContent(const Canvas& canvas, const Rect& frame,
                                     const ShadowItem& shadow) {
  setSource(canvas.cr, shadow.color);
  shadows_.draw(canvas.cr, shadow, frame, canvas.scale, canvas.area);
}

}  // namespace orvane::host
