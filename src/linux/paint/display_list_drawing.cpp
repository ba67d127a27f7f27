#include "linux/paint/display_list_drawing.h"

#include <algorithm>
#include <optional>
#include <span>

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

bool beginsGroup(const DisplayItem& item) {
  return std::holds_alternative<GroupBegin>(item.content);
}

// In points, a little more than the area: most items are far from a few digits, which is told
// without rounding theirs to pixels.
Rect reachOf(const PixelRect& area, double scale) {
  return Rect{area.x / scale, area.y / scale, area.width / scale, area.height / scale}.insetBy(
      -2 / scale);
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
  const Rect reach = reachOf(canvas.area, canvas.scale);
  for (std::size_t i = range.first; i < range.last; ++i) {
    if (!beginsGroup(list[i])) {
      if (list[i].bounds().intersects(reach)) drawItem(canvas, list[i]);
      continue;
    }
    const std::size_t end = std::min(endOfGroup(list, i), range.last);
    drawGroup(canvas, list, {i, end});
    i = end;
  }
}

void DisplayListDrawing::drawItem(const Canvas& canvas, const DisplayItem& item) {
  if (item.opacity <= 0) return;
  const PixelRect touched = pixelsCovering(item.bounds(), canvas.scale);
  const PixelRect area = intersectionOf(touched, canvas.area);
  if (area.isEmpty()) return;
  // Nothing is drawn beyond an item's bounds, since nothing beyond them is drawn again with it.
  const SavedState saved(canvas.cr);
  if (area != canvas.area) clipTo(canvas.cr, area);
  const Canvas limited{canvas.cr, canvas.scale, area};
  std::visit([&](const auto& content) { drawContent(limited, item.frame, content); }, item.content);
}

// A group that holds nothing but another one is drawn as one with it: a temporary picture less.
DisplayListDrawing::Group DisplayListDrawing::groupAt(const DisplayList& list, Range range,
                                                      double scale) {
  Group group{{}, 1, std::nullopt};
  for (bool holdsOneGroup = true; holdsOneGroup && !group.clip;) {
    const DisplayItem& item = list[range.first];
    const auto& begin = std::get<GroupBegin>(item.content);
    group.opacity *= std::min(begin.groupOpacity, 1.0);
    if (begin.clip) group.clip = outlineOf(*begin.clip, item.frame, scale);
    group.inside = {range.first + 1, range.last};
    holdsOneGroup = group.inside.first < group.inside.last &&
                    beginsGroup(list[group.inside.first]) &&
                    endOfGroup(list, group.inside.first) + 1 == group.inside.last;
    range = {group.inside.first, group.inside.last - 1};
  }
  return group;
}

void DisplayListDrawing::drawGroup(const Canvas& canvas, const DisplayList& list, Range range) {
  const Group group = groupAt(list, range, canvas.scale);
  if (list[range.first].opacity <= 0 || group.opacity <= 0) return;
  if (!group.clip && group.opacity >= 1) return drawItems(canvas, list, group.inside);

  PixelRect area;
  for (std::size_t i = group.inside.first; i < group.inside.last; ++i)
    area = unionOf(area, pixelsCovering(list[i].bounds(), canvas.scale));
  area = intersectionOf(area, canvas.area);
  if (group.clip) area = intersectionOf(area, coveringPixels(*group.clip));
  if (area.isEmpty()) return;

  const SavedState saved(canvas.cr);
  clipTo(canvas.cr, area);
  setGroupAsSource({canvas.cr, canvas.scale, area}, list, group.inside);
  if (group.clip)
    outlines_.fill(canvas.cr, *group.clip, area, group.opacity);
  else
    cairo_paint_with_alpha(canvas.cr, group.opacity);
}

void DisplayListDrawing::setGroupAsSource(const Canvas& canvas, const DisplayList& list,
                                          Range inside) {
  const PixelRect& area = canvas.area;
  const auto items = std::span(list).subspan(inside.first, inside.last - inside.first);
  if (!GroupPictures::keeps(items, area)) {
    cairo_push_group(canvas.cr);
    drawItems(canvas, list, inside);
    cairo_pop_group_to_source(canvas.cr);
    return;
  }
  cairo_surface_t* picture =
      pictures_.picture({{items.begin(), items.end()}, canvas.scale, area}, [&](cairo_t* cr) {
        drawItems({cr, canvas.scale, area}, list, inside);
      });
  cairo_set_source_surface(canvas.cr, picture, area.x, area.y);
  cairo_pattern_set_filter(cairo_get_source(canvas.cr), CAIRO_FILTER_NEAREST);
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
  outlines_.fill(canvas.cr, outline, canvas.area);
}

void DisplayListDrawing::drawContent(const Canvas& canvas, const Rect& frame,
                                     const StrokeItem& stroke) {
  const Outline outline = outlineOf(stroke.shape, frame, canvas.scale);
  setSource(canvas.cr, stroke.color);
  outlines_.stroke(canvas.cr, outline, lineWidthOf(stroke, canvas.scale), canvas.area);
}

void DisplayListDrawing::drawContent(const Canvas& canvas, const Rect& frame,
                                     const ShadowItem& shadow) {
  setSource(canvas.cr, shadow.color);
  shadows_.draw(canvas.cr, shadow, frame, canvas.scale, canvas.area);
}

}  // namespace orvane::host
