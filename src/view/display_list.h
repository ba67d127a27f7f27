#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "foundation/color.h"
#include "view/font.h"
#include "view/geometry.h"
#include "view/shape.h"
#include "view/text_measurer.h"

namespace orvane {

// A text in its frame. Each line begins at the side of the frame where its own direction starts:
// one in a right-to-left script at the right.
struct TextItem {
  std::string text;  // whole, however it is cut
  TextStyle style;   // with the size as drawn, after any scaling down to fit
  Color color;
  double firstBaseline = 0;  // below the frame's top
  // Not empty for a one-line text of digits that tick: the advance of each character of `text`.
  // Characters then stand at fixed places, so two such items differ only in the cells that differ.
  std::vector<double> cells = {};
  friend bool operator==(const TextItem&, const TextItem&) = default;
};

// One of our own drawings, scaled to go with text of the given font.
struct SymbolItem {
  std::string name;
  Font font;
  Color color;
  friend bool operator==(const SymbolItem&, const SymbolItem&) = default;
};

struct FillItem {
  Shape shape;
  Fill fill;
  friend bool operator==(const FillItem&, const FillItem&) = default;
};

// A line drawn wholly inside the shape's outline.
struct StrokeItem {
  Shape shape;
  double lineWidth = 1;
  Color color;
  friend bool operator==(const StrokeItem&, const StrokeItem&) = default;
};

// The blurred shadow of a shape that fills the frame. It is drawn only outside the shape, since
// what casts it is translucent. `radius` is the blur's extent: nothing is drawn farther than
// that from the offset outline.
struct ShadowItem {
  Shape shape;
  Color color;
  double radius = 0;
  Point offset;
  friend bool operator==(const ShadowItem&, const ShadowItem&) = default;
};

// What follows, up to the matching GroupEnd, is drawn as one picture, which is then clipped and
// drawn at `groupOpacity`. Groups nest.
struct GroupBegin {
  double groupOpacity = 1;
  std::optional<Shape> clip;  // filling the item's frame
  friend bool operator==(const GroupBegin&, const GroupBegin&) = default;
};
struct GroupEnd {
  friend bool operator==(const GroupEnd&, const GroupEnd&) = default;
};

struct DisplayItem {
  Rect frame;
  // The product of the opacities of the groups around it, not including its own colour's. An item
  // at 0 is listed but not drawn.
  double opacity = 1;
  std::variant<TextItem, SymbolItem, FillItem, StrokeItem, ShadowItem, GroupBegin, GroupEnd>
      content;

  // All that drawing it may touch: for a shadow more than its frame, for text with overhanging
  // glyphs too; empty when nothing is drawn.
  [[nodiscard]] Rect bounds() const;
  friend bool operator==(const DisplayItem&, const DisplayItem&) = default;
};

// In drawing order.
using DisplayList = std::vector<DisplayItem>;

// The index of the GroupEnd that matches the GroupBegin at `begin`; the list's size without one.
[[nodiscard]] std::size_t endOfGroup(const DisplayList& list, std::size_t begin);

// One line of text each, for tests and for looking at a case.
std::string describe(const DisplayItem& item);
std::string describe(const DisplayList& list);

// The union of all that is drawn.
Rect boundsOf(const DisplayList& list);

}  // namespace orvane
