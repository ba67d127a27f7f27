#pragma once

#include <cstddef>
#include <optional>

#include "linux/paint/cell_masks.h"
#include "linux/paint/gradient.h"
#include "linux/paint/group_pictures.h"
#include "linux/paint/outline_masks.h"
#include "linux/paint/shadow.h"
#include "linux/paint/symbol_masks.h"
#include "linux/paint/typesetter.h"
#include "view/display_list.h"

namespace orvane::host {

// Plays a display list on a cairo context whose units are the pixels of the plane.
class DisplayListDrawing {
 public:
  explicit DisplayListDrawing(Typesetter& typesetter)
      : typesetter_(typesetter), cells_(typesetter), gradients_(outlines_) {}

  // Draws what meets `area`, to which the context is clipped already.
  void draw(cairo_t* cr, const DisplayList& list, double scale, const PixelRect& area);

 private:
  // Where drawing goes at the moment.
  struct Canvas {
    cairo_t* cr = nullptr;
    double scale = 1;
    PixelRect area;  // the clip
  };
  // Items from `first` up to, not including, `last`.
  struct Range {
    std::size_t first = 0;
    std::size_t last = 0;
  };

  struct Group {
    Range inside;
    double opacity = 1;
    std::optional<Outline> clip;
  };

  static Group groupAt(const DisplayList& list, Range range, double scale);
  void drawItems(const Canvas& canvas, const DisplayList& list, Range range);
  void drawItem(const Canvas& canvas, const DisplayItem& item);
  void drawGroup(const Canvas& canvas, const DisplayList& list, Range range);
  void setGroupAsSource(const Canvas& canvas, const DisplayList& list, Range inside);
  void drawContent(const Canvas& canvas, const Rect& frame, const TextItem& text);
  void drawContent(const Canvas& canvas, const Rect& frame, const SymbolItem& symbol);
  void drawContent(const Canvas& canvas, const Rect& frame, const FillItem& fill);
  void drawContent(const Canvas& canvas, const Rect& frame, const StrokeItem& stroke);
  void drawContent(const Canvas& canvas, const Rect& frame, const ShadowItem& shadow);
  void drawContent(const Canvas&, const Rect&, const GroupBegin&) {}
  void drawContent(const Canvas&, const Rect&, const GroupEnd&) {}

  Typesetter& typesetter_;
  CellDrawing cells_;
  SymbolMasks symbols_;
  OutlineMasks outlines_;
  ShadowDrawing shadows_;
  GradientDrawing gradients_;
  GroupPictures pictures_;
};

}  // namespace orvane::host
