#include "view/display_list.h"

#include "view/symbols.h"

namespace orvane {
namespace {

// Glyphs may reach past the space that a text is measured to take: slanted letters, accents
// stacked on capitals. Painters draw text only within this margin.
constexpr double overhang = 0.25;  // of the font's size

bool isClear(const Fill& fill) {
  struct IsClear {
    bool operator()(const Color& color) const { return color.opacity() <= 0; }
    bool operator()(const Material& material) const { return material.tint.opacity() <= 0; }
    bool operator()(const LinearGradient& gradient) const {
      for (const Color& stop : gradient.stops) {
        if (stop.opacity() > 0) return false;
      }
      return true;
    }
  };
  return std::visit(IsClear{}, fill);
}

struct Bounds {
  Rect frame;

  Rect operator()(const TextItem& text) const {
    if (text.color.opacity() <= 0 || text.text.empty() || frame.isEmpty()) return {};
    return frame.insetBy(-overhang * text.style.font.size);
  }
  Rect operator()(const SymbolItem& symbol) const {
    if (symbol.color.opacity() <= 0) return {};
    return unionOf(frame, frame.movedBy(0, symbolDrop(symbol.font)));
  }
  Rect operator()(const FillItem& item) const { return isClear(item.fill) ? Rect{} : frame; }
  Rect operator()(const StrokeItem& stroke) const {
    return stroke.color.opacity() > 0 && stroke.lineWidth > 0 ? frame : Rect{};
  }
  Rect operator()(const ShadowItem& shadow) const {
    if (shadow.color.opacity() <= 0 || frame.isEmpty()) return {};
    return frame.movedBy(shadow.offset.x, shadow.offset.y).insetBy(-shadow.radius);
  }
  // Markers draw nothing of their own.
  Rect operator()(const GroupBegin&) const { return {}; }
  Rect operator()(const GroupEnd&) const { return {}; }
};

}  // namespace

Rect DisplayItem::bounds() const {
  if (opacity <= 0) return {};
  const Rect drawn = std::visit(Bounds{frame}, content);
  return drawn.isEmpty() ? Rect{} : drawn;
}

std::size_t endOfGroup(const DisplayList& list, std::size_t begin) {
  std::size_t depth = 0;
  for (std::size_t index = begin; index < list.size(); ++index) {
    if (std::holds_alternative<GroupBegin>(list[index].content)) ++depth;
    if (std::holds_alternative<GroupEnd>(list[index].content) && --depth == 0) return index;
  }
  return list.size();
}

Rect boundsOf(const DisplayList& list) {
  Rect all;
  std::vector<std::optional<Rect>> clips;  // of the groups around the item, each within the outer
  for (const DisplayItem& item : list) {
    if (const auto* group = std::get_if<GroupBegin>(&item.content)) {
      auto clip = clips.empty() ? std::nullopt : clips.back();
      if (group->clip) clip = clip ? intersectionOf(*clip, item.frame) : item.frame;
      clips.push_back(clip);
    } else if (std::holds_alternative<GroupEnd>(item.content)) {
      if (!clips.empty()) clips.pop_back();
    } else {
      const bool clipped = !clips.empty() && clips.back();
      all = unionOf(all, clipped ? intersectionOf(item.bounds(), *clips.back()) : item.bounds());
    }
  }
  return all;
}

}  // namespace orvane
