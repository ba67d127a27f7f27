#include <algorithm>

#include "view/alignment.h"
#include "view/distribution.h"
#include "view/elements.h"

namespace orvane::detail {
namespace {

// The children of a stack in the space that was offered to it, relative to its origin.
struct Arrangement {
  std::vector<Proposal> offers;
  std::vector<Measurement> answers;
  std::vector<Point> origins;
  Size size;
};

// The two axes' names for along and across, so that both stacks share their rules.
struct Horizontally {
  static Proposal offer(double along, Proposal stack) { return {along, stack.height}; }
  static double along(Size size) { return size.width; }
  static double along(Proposal proposal) { return proposal.width; }
};
struct Vertically {
  static Proposal offer(double along, Proposal stack) { return {stack.width, along}; }
  static double along(Size size) { return size.height; }
  static double along(Proposal proposal) { return proposal.height; }
};

template <class Axis>
LengthRange rangeOf(const View& child, Proposal stack, LayoutPass& pass) {
  if (const auto* spacer = child.node().as<SpacerNode>()) {
    return {spacer->minLength, unlimitedWidth, true};
  }
  if constexpr (std::is_same_v<Axis, Vertically>) {
    // Its height is the same whatever it is offered; the order of such children is their own.
    if (!child.node().respondsToHeight) return {};
  }
  return {Axis::along(pass.measure(child, Axis::offer(0, stack)).size),
          Axis::along(pass.measure(child, Axis::offer(unlimitedWidth, stack)).size), false};
}

template <class Axis>
Measurement answerOf(const View& child, Proposal offer, LayoutPass& pass) {
  Measurement answer = pass.measure(child, offer);
  if (!child.node().as<SpacerNode>()) return answer;
  if constexpr (std::is_same_v<Axis, Horizontally>) {
    answer.size.height = 0;
  } else {
    answer.size.width = 0;
  }
  return answer;
}

// Offers each child its part. Where the children stand is settled afterwards, axis by axis.
template <class Axis>
Arrangement served(const std::vector<View>& children, double spacing, Proposal stack,
                   LayoutPass& pass) {
  const double gaps = children.empty() ? 0 : spacing * static_cast<double>(children.size() - 1);
  std::vector<LengthRange> ranges(children.size());
  if (children.size() > 1) {
    std::transform(children.begin(), children.end(), ranges.begin(),
                   [&](const View& child) { return rangeOf<Axis>(child, stack, pass); });
  }
  Arrangement result;
  result.offers.resize(children.size());
  result.answers.resize(children.size());
  distribute(ranges, Axis::along(stack) - gaps, [&](std::size_t index, double offer) {
    result.offers[index] = Axis::offer(offer, stack);
    result.answers[index] = answerOf<Axis>(children[index], result.offers[index], pass);
    return Axis::along(result.answers[index].size);
  });
  return result;
}

// What stands on the line where baselines meet: a view without text stands on its bottom edge.
double ascentOf(const Measurement& answer) {
  return answer.firstBaseline.value_or(answer.size.height);
}

double highestAscent(const std::vector<Measurement>& answers) {
  double highest = 0;
  for (const auto& answer : answers) highest = std::max(highest, ascentOf(answer));
  return highest;
}

double heightOfRow(VerticalAlignment alignment, const std::vector<Measurement>& answers) {
  const bool byBaseline = alignment == VerticalAlignment::firstTextBaseline;
  const double ascent = byBaseline ? highestAscent(answers) : 0;
  double height = 0;
  for (const auto& answer : answers) {
    const double above = byBaseline ? ascent - ascentOf(answer) : 0;
    height = std::max(height, above + answer.size.height);
  }
  return height;
}

Arrangement arrange(const HStackNode& node, Proposal proposal, LayoutPass& pass) {
  auto row = served<Horizontally>(node.children, node.spacing, proposal, pass);
  const bool byBaseline = node.alignment == VerticalAlignment::firstTextBaseline;
  const double ascent = byBaseline ? highestAscent(row.answers) : 0;
  row.size.height = heightOfRow(node.alignment, row.answers);
  double x = 0;
  for (const auto& answer : row.answers) {
    const double y = byBaseline ? ascent - ascentOf(answer)
                                : offsetOf(node.alignment, answer.size.height, row.size.height);
    row.origins.push_back({x, y});
    row.size.width = x + answer.size.width;
    x = row.size.width + node.spacing;
  }
  return row;
}

Arrangement arrange(const VStackNode& node, Proposal proposal, LayoutPass& pass) {
  auto column = served<Vertically>(node.children, node.spacing, proposal, pass);
  for (const auto& answer : column.answers) {
    column.size.width = std::max(column.size.width, answer.size.width);
  }
  double y = 0;
  for (const auto& answer : column.answers) {
    column.origins.push_back({offsetOf(node.alignment, answer.size.width, column.size.width), y});
    column.size.height = y + answer.size.height;
    y = column.size.height + node.spacing;
  }
  return column;
}

Measurement measured(const Arrangement& arrangement) {
  Measurement result{arrangement.size, std::nullopt};
  for (std::size_t index = 0; index < arrangement.answers.size(); ++index) {
    if (const auto baseline = arrangement.answers[index].firstBaseline) {
      result.firstBaseline = arrangement.origins[index].y + *baseline;
      break;
    }
  }
  return result;
}

void placeAll(const Arrangement& arrangement, const std::vector<View>& children, const Rect& frame,
              LayoutPass& pass) {
  for (std::size_t index = 0; index < children.size(); ++index) {
    const auto& origin = arrangement.origins[index];
    const auto& size = arrangement.answers[index].size;
    pass.place(children[index], {frame.x + origin.x, frame.y + origin.y, size.width, size.height},
               arrangement.offers[index]);
  }
}

}  // namespace

Measurement measureElement(const VStackNode& node, Proposal proposal, LayoutPass& pass) {
  return measured(arrange(node, proposal, pass));
}

void placeElement(const VStackNode& node, const Rect& frame, Proposal proposal, LayoutPass& pass) {
  placeAll(arrange(node, proposal, pass), node.children, frame, pass);
}

Measurement measureElement(const HStackNode& node, Proposal proposal, LayoutPass& pass) {
  return measured(arrange(node, proposal, pass));
}

void placeElement(const HStackNode& node, const Rect& frame, Proposal proposal, LayoutPass& pass) {
  placeAll(arrange(node, proposal, pass), node.children, frame, pass);
}

}  // namespace orvane::detail
