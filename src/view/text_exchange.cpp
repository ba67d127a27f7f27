#include "view/text_exchange.h"

#include <algorithm>
#include <type_traits>
#include <utility>

#include "view/damage.h"
#include "view/elements.h"
#include "view/node_children.h"

namespace orvane::detail {
namespace {

// Two views that stand at the same place.
struct Pair {
  const View& before;
  const View& fresh;
};

// A view that changes must stand in one place only, since the memory knows of one. Then its copies
// are the one in the tree and the one in the memory.
bool standsOnce(const View& view) { return view.copies() == 2; }

// Whether two nodes of a kind are the same in themselves, whatever their children are.
template <class Node>
bool areAlike(const Node& before, const Node& fresh) {
  Node probe = fresh;
  if constexpr (requires { probe.children; }) {
    if (probe.children.size() != before.children.size()) return false;
  }
  forEachChildPair(before, probe, [](const View& was, View& is) { is = was; });
  return probe == before;
}

// Where two trees differ, if in nothing but texts.
class Differences {
 public:
  // False where something else differs.
  bool collect(const View& before, const View& fresh);

  std::vector<Pair> texts;
  std::vector<Pair> around;  // the views that hold them

 private:
  template <class Node>
  bool collectWithin(const Node& before, const Node& fresh) {
    bool sufficient = areAlike(before, fresh);
    forEachChildPair(before, fresh, [&](const View& was, const View& is) {
      sufficient = sufficient && collect(was, is);
    });
    return sufficient;
  }
};

bool Differences::collect(const View& before, const View& fresh) {
  if (&before.node() == &fresh.node()) return true;
  if (!standsOnce(before)) return false;
  const auto visitor = [&](const auto& node) {
    using Node = std::decay_t<decltype(node)>;
    const auto* old = before.node().as<Node>();
    if (!old) return false;
    if constexpr (std::is_same_v<Node, TextNode>) {
      texts.push_back({before, fresh});
      return true;
    } else if constexpr (isLeaf<Node>) {
      return false;
    } else {
      around.push_back({before, fresh});
      return collectWithin(*old, node);
    }
  };
  return std::visit(visitor, fresh.node().content);
}

// An item that takes another's place in the list.
struct Exchange {
  std::size_t index;
  DisplayItem fresh;
};

// Whether the text answers all that the one before it was asked, and answered, in the same way.
bool answersAlike(const TextNode& text, const LayoutMemory::Node& before,
                  const TextMeasurer& measurer) {
  if (before.answers.size() >= LayoutMemory::mostAnswers) return false;
  return std::all_of(before.answers.begin(), before.answers.end(),
                     [&](const LayoutMemory::Answer& answer) {
                       return measureText(text, answer.proposal, measurer) == answer.measurement;
                     });
}

std::optional<Exchange> exchangeOf(const Pair& pair, LayoutMemory& memory, const Layout& layout,
                                   const TextMeasurer& measurer) {
  const auto* known = memory.find(pair.before);
  // What was taken over whole from an earlier pass has its place by that pass's count.
  if (!known || known->placement.pass != memory.lastPass()) return std::nullopt;
  const auto& text = *pair.fresh.node().as<TextNode>();
  if (!answersAlike(text, *known, measurer)) return std::nullopt;
  const auto& place = known->placement;
  DisplayItem item{place.frame, place.opacity, placedText(text, place.proposal, measurer)};
  // The union of all that is drawn stays the same, too.
  if (item.bounds() != layout.list[place.firstItem].bounds()) return std::nullopt;
  return Exchange{place.firstItem, std::move(item)};
}

std::vector<Rect> apply(std::vector<Exchange> exchanges, DisplayList& list) {
  std::sort(exchanges.begin(), exchanges.end(),
            [](const Exchange& a, const Exchange& b) { return a.index < b.index; });
  DisplayList before, fresh;
  for (auto& [index, item] : exchanges) {
    fresh.push_back(item);
    before.push_back(std::exchange(list[index], std::move(item)));
  }
  return damage(before, fresh);
}

}  // namespace

std::optional<std::vector<Rect>> exchangeTexts(LayoutMemory& memory, Layout& layout,
                                               const View& before, const View& fresh,
                                               const TextMeasurer& measurer) {
  Differences differences;
  if (!differences.collect(before, fresh)) return std::nullopt;
  std::vector<Exchange> exchanges;
  for (const Pair& pair : differences.texts) {
    auto exchange = exchangeOf(pair, memory, layout, measurer);
    if (!exchange) return std::nullopt;
    exchanges.push_back(std::move(*exchange));
  }
  for (const Pair& pair : differences.around) memory.handOver(pair.before, pair.fresh);
  for (const Pair& pair : differences.texts) memory.handOver(pair.before, pair.fresh);
  return apply(std::move(exchanges), layout.list);
}

}  // namespace orvane::detail
