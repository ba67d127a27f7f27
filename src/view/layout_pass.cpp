#include "view/layout_pass.h"

#include <algorithm>
#include <utility>

#include "view/elements.h"

namespace orvane::detail {
namespace {

const Measurement* find(const std::vector<LayoutMemory::Answer>& answers, Proposal proposal) {
  for (const auto& answer : answers) {
    if (answer.proposal == proposal) return &answer.measurement;
  }
  return nullptr;
}

}  // namespace

LayoutMemory::Node& LayoutMemory::of(const View& view) {
  const auto [entry, isNew] = nodes_.try_emplace(&view.node());
  if (isNew) entry->second.keptAlive = view;
  return entry->second;
}

LayoutMemory::Node* LayoutMemory::find(const View& view) {
  const auto known = nodes_.find(&view.node());
  return known == nodes_.end() ? nullptr : &known->second;
}

void LayoutMemory::handOver(const View& from, const View& to) {
  auto entry = nodes_.extract(&from.node());
  if (!entry) return;
  entry.key() = &to.node();
  entry.mapped().keptAlive = to;
  nodes_.insert(std::move(entry));
}

std::size_t LayoutMemory::beginPass() { return ++pass_; }

void LayoutMemory::sweep() {
  if (nodes_.size() <= sweepAbove_) return;
  // A dropped node may have been the last to hold its children, hence more than one round.
  std::size_t dropped = 0;
  do {
    dropped = std::erase_if(nodes_,
                            [](const auto& entry) { return entry.second.keptAlive.copies() == 1; });
  } while (dropped > 0);
  sweepAbove_ = std::max<std::size_t>(1024, 2 * nodes_.size());
}

LayoutPass::LayoutPass(const TextMeasurer& measurer, LayoutMemory& memory, const Layout& previous)
    : measurer_(measurer), memory_(memory), previous_(previous), pass_(memory.beginPass()) {
  layout_.list.reserve(previous.list.size());
  layout_.frames.reserve(previous.frames.size());
}

Measurement LayoutPass::measure(const View& view, Proposal proposal) {
  if (!view.node().respondsToHeight) proposal.height = 0;
  auto& answers = memory_.of(view).answers;
  if (const auto* known = find(answers, proposal)) return *known;
  const auto measureNode = [&](const auto& node) { return measureElement(node, proposal, *this); };
  const Measurement measurement = std::visit(measureNode, view.node().content);
  if (answers.size() >= LayoutMemory::mostAnswers) answers.erase(answers.begin());
  answers.push_back({proposal, measurement});
  return measurement;
}

void LayoutPass::place(const View& view, const Rect& frame, Proposal proposal) {
  if (!view.node().respondsToHeight) proposal.height = 0;
  auto& placement = memory_.of(view).placement;
  if (placeAgain(placement, frame, proposal)) return;
  const std::size_t firstItem = layout_.list.size();
  const std::size_t firstFrame = layout_.frames.size();
  std::visit([&](const auto& node) { placeElement(node, frame, proposal, *this); },
             view.node().content);
  placement = {pass_,      frame,
               proposal,   opacity_,
               firstItem,  layout_.list.size(),
               firstFrame, layout_.frames.size()};
}

// An unchanged subtree that lands where it was in the pass before yields what it yielded then.
bool LayoutPass::placeAgain(LayoutMemory::Placement& last, const Rect& frame, Proposal proposal) {
  const bool same = last.pass != 0 && last.pass + 1 == pass_ && last.frame == frame &&
                    last.proposal == proposal && last.opacity == opacity_;
  if (!same) return false;
  const auto at = [](const auto& values, std::size_t index) {
    return values.begin() + static_cast<std::ptrdiff_t>(index);
  };
  const LayoutMemory::Placement old = last;
  last.pass = pass_;
  last.firstItem = layout_.list.size();
  last.firstFrame = layout_.frames.size();
  const auto& [list, frames] = previous_;
  layout_.list.insert(layout_.list.end(), at(list, old.firstItem), at(list, old.endItem));
  layout_.frames.insert(layout_.frames.end(), at(frames, old.firstFrame), at(frames, old.endFrame));
  last.endItem = layout_.list.size();
  last.endFrame = layout_.frames.size();
  return true;
}

void LayoutPass::emitGroup(const Rect& frame, double opacity, std::optional<Shape> clip,
                           const View& content, Proposal proposal) {
  emit(frame, GroupBegin{opacity, clip});
  const double outer = std::exchange(opacity_, opacity_ * opacity);
  place(content, frame, proposal);
  opacity_ = outer;
  emit(frame, GroupEnd{});
}

Layout layoutWith(LayoutMemory& memory, const Layout& previous, const View& view, Size size,
                  const TextMeasurer& measurer) {
  LayoutPass pass(measurer, memory, previous);
  const Proposal proposal{size.width, size.height};
  const Size answer = pass.measure(view, proposal).size;
  pass.place(view,
             {(size.width - answer.width) / 2, (size.height - answer.height) / 2, answer.width,
              answer.height},
             proposal);
  return pass.take();
}

}  // namespace orvane::detail

namespace orvane {

Layout layout(const View& view, Size size, const TextMeasurer& measurer) {
  detail::LayoutMemory memory;
  return detail::layoutWith(memory, {}, view, size, measurer);
}

}  // namespace orvane
