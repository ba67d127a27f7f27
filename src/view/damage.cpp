#include "view/damage.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace orvane {
namespace {

// Digits are drawn within their cells, save for the softened edge of a round one.
constexpr double cellMargin = 1;
// With more rectangles than these it is cheaper to paint a little too much.
constexpr std::size_t mostRects = 16;

// Rectangles to repaint; those that meet become one.
class Region {
 public:
  void add(Rect rect) {
    if (rect.isEmpty()) return;
    for (auto meeting = findMeeting(rect); meeting != rects_.end(); meeting = findMeeting(rect)) {
      if (meeting->contains(rect)) return;
      rect = unionOf(*meeting, rect);
      rects_.erase(meeting);
    }
    rects_.push_back(rect);
    if (rects_.size() > mostRects) joinLast();
  }
  std::vector<Rect> take() { return std::move(rects_); }

 private:
  std::vector<Rect>::iterator findMeeting(const Rect& rect) {
    return std::find_if(rects_.begin(), rects_.end(),
                        [&](const Rect& other) { return other.intersects(rect); });
  }
  void joinLast() {
    const Rect last = rects_.back();
    rects_.pop_back();
    const Rect joined = unionOf(rects_.back(), last);
    rects_.pop_back();
    add(joined);
  }

  std::vector<Rect> rects_;
};

// The part of a list in which the two lists differ, from the first to the last difference.
struct Span {
  const DisplayList& list;
  std::size_t begin;
  std::size_t end;
};

bool isMarker(const DisplayItem& item) {
  return std::holds_alternative<GroupBegin>(item.content) ||
         std::holds_alternative<GroupEnd>(item.content);
}

// Adds all that the span draws.
void addAll(const Span& span, Region& region) {
  for (std::size_t index = span.begin; index < span.end; ++index) {
    region.add(span.list[index].bounds());
  }
}

// Whether every group that begins or ends in the span does both there.
bool isBalanced(const Span& span) {
  std::ptrdiff_t depth = 0;
  for (std::size_t index = span.begin; index < span.end; ++index) {
    if (std::holds_alternative<GroupBegin>(span.list[index].content)) ++depth;
    if (std::holds_alternative<GroupEnd>(span.list[index].content)) --depth;
    if (depth < 0) return false;
  }
  return depth == 0;
}

bool haveSameGroups(const Span& before, const Span& after) {
  if (before.end - before.begin != after.end - after.begin) return false;
  for (std::size_t offset = 0; offset < before.end - before.begin; ++offset) {
    const auto& old = before.list[before.begin + offset];
    const auto& fresh = after.list[after.begin + offset];
    const bool same = old.content.index() == fresh.content.index();
    if (!same && (isMarker(old) || isMarker(fresh))) return false;
  }
  return true;
}

// Whether two items are texts that differ in nothing but the characters in their cells.
bool differOnlyInCells(const DisplayItem& before, const DisplayItem& after) {
  const auto* old = std::get_if<TextItem>(&before.content);
  const auto* fresh = std::get_if<TextItem>(&after.content);
  return old && fresh && !old->cells.empty() && old->cells == fresh->cells &&
         old->text.size() == fresh->text.size() && old->cells.size() == old->text.size() &&
         old->style == fresh->style && old->color == fresh->color &&
         old->firstBaseline == fresh->firstBaseline && before.frame == after.frame &&
         before.opacity == after.opacity;
}

// Neighbouring cells that differ are one rectangle.
void addCells(const DisplayItem& before, const DisplayItem& after, Region& region) {
  if (after.bounds().isEmpty()) return;
  const auto& old = std::get<TextItem>(before.content);
  const auto& fresh = std::get<TextItem>(after.content);
  double x = after.frame.x;
  Rect run;
  for (std::size_t index = 0; index < old.cells.size(); ++index) {
    const Rect cell{x, after.frame.y, old.cells[index], after.frame.height};
    if (old.text[index] != fresh.text[index]) {
      run = unionOf(run, cell);
    } else if (!run.isEmpty()) {
      region.add(run.insetBy(-cellMargin));
      run = {};
    }
    x += old.cells[index];
  }
  if (!run.isEmpty()) region.add(run.insetBy(-cellMargin));
}

void addPair(const DisplayItem& before, const DisplayItem& after, Region& region) {
  if (before == after) return;
  if (differOnlyInCells(before, after)) {
    addCells(before, after, region);
  } else {
    region.add(before.bounds());
    region.add(after.bounds());
  }
}

// For spans whose groups begin and end at the same places.
void addPairs(const Span& before, const Span& after, Region& region) {
  for (std::size_t offset = 0; offset < before.end - before.begin; ++offset) {
    const std::size_t old = before.begin + offset;
    const std::size_t fresh = after.begin + offset;
    const bool groupDiffers = std::holds_alternative<GroupBegin>(after.list[fresh].content) &&
                              before.list[old] != after.list[fresh];
    if (groupDiffers) {
      // What surrounds the contents has changed: all of them look different.
      addAll({before.list, old, endOfGroup(before.list, old)}, region);
      addAll({after.list, fresh, endOfGroup(after.list, fresh)}, region);
    } else {
      addPair(before.list[old], after.list[fresh], region);
    }
  }
}

}  // namespace

std::vector<Rect> damage(const DisplayList& before, const DisplayList& after) {
  const auto first = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
  const std::size_t prefix = static_cast<std::size_t>(first.first - before.begin());
  const std::size_t longest = std::min(before.size(), after.size()) - prefix;
  std::size_t suffix = 0;
  while (suffix < longest &&
         before[before.size() - 1 - suffix] == after[after.size() - 1 - suffix]) {
    ++suffix;
  }
  const Span old{before, prefix, before.size() - suffix};
  const Span fresh{after, prefix, after.size() - suffix};
  Region region;
  if (haveSameGroups(old, fresh)) {
    addPairs(old, fresh, region);
  } else if (isBalanced(old) && isBalanced(fresh)) {
    addAll(old, region);
    addAll(fresh, region);
  } else {
    region.add(boundsOf(before));
    region.add(boundsOf(after));
  }
  return region.take();
}

}  // namespace orvane
