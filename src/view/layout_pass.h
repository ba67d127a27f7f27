#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "view/layout.h"
#include "view/text_fitting.h"
#include "view/view_node.h"

namespace orvane::detail {

// The space that a parent offers; infinity along an axis asks for the most a view would take.
struct Proposal {
  double width = 0;
  double height = 0;
  friend bool operator==(const Proposal&, const Proposal&) = default;
};

// What a view answers to a proposal.
struct Measurement {
  Size size;
  std::optional<double> firstBaseline;  // below the top; absent where there is no text
  friend bool operator==(const Measurement&, const Measurement&) = default;
};

// What earlier passes found out about nodes, so that a pass over a tree which shares nodes with
// the one before pays only for the new ones. Bounded by the size of the trees that are alive.
class LayoutMemory {
 public:
  // A node that is asked for more different sizes than these forgets the oldest.
  static constexpr std::size_t mostAnswers = 8;

  struct Answer {
    Proposal proposal;
    Measurement measurement;
  };
  // Where a node was placed last, and which part of that pass's result came of it.
  struct Placement {
    std::size_t pass = 0;
    Rect frame;
    Proposal proposal;
    double opacity = 1;
    std::size_t firstItem = 0, endItem = 0;
    std::size_t firstFrame = 0, endFrame = 0;
  };
  struct Node {
    View keptAlive;  // an address stays taken as long as it is a key here
    std::vector<Answer> answers;
    Placement placement;
  };

  Node& of(const View& view);
  // Null when nothing is known of it. Valid until the next call.
  Node* find(const View& view);
  // Tells of `to` what was known of `from`, unless something is known of it already.
  void handOver(const View& from, const View& to);
  std::size_t beginPass();
  [[nodiscard]] std::size_t lastPass() const { return pass_; }
  // Forgets nodes that only this memory still holds.
  void sweep();

 private:
  std::unordered_map<const ViewNode*, Node> nodes_;
  std::size_t pass_ = 0;
  std::size_t sweepAbove_ = 1024;
};

// One pass over a tree: the elements measure their children and then place them through it.
class LayoutPass {
 public:
  // `previous` is what the last pass with this memory answered.
  LayoutPass(const TextMeasurer& measurer, LayoutMemory& memory, const Layout& previous);

  Measurement measure(const View& view, Proposal proposal);
  // `frame` has the size that the view answered to `proposal`.
  void place(const View& view, const Rect& frame, Proposal proposal);

  [[nodiscard]] const TextMeasurer& measurer() const { return measurer_; }

  // For the elements, while they are placed.
  template <class Item>
  void emit(const Rect& frame, Item item) {
    layout_.list.push_back({frame, opacity_, std::move(item)});
  }
  void emitGroup(const Rect& frame, double opacity, std::optional<Shape> clip, const View& content,
                 Proposal proposal);
  void name(const std::string& name, const Rect& frame) { layout_.frames.push_back({name, frame}); }

  // The result, once the root has been placed.
  Layout take() { return std::move(layout_); }

 private:
  [[nodiscard]] bool placeAgain(LayoutMemory::Placement& last, const Rect& frame,
                                Proposal proposal);

  const TextMeasurer& measurer_;
  LayoutMemory& memory_;
  const Layout& previous_;
  std::size_t pass_;
  double opacity_ = 1;
  Layout layout_;
};

// Lays out the view as layout() does, with a memory that lasts.
Layout layoutWith(LayoutMemory& memory, const Layout& previous, const View& view, Size size,
                  const TextMeasurer& measurer);

}  // namespace orvane::detail
