#include "view/scene.h"

#include <utility>

#include "view/damage.h"
#include "view/layout_pass.h"
#include "view/reconcile.h"
#include "view/text_exchange.h"

namespace orvane {
namespace {

std::vector<Rect> within(const Rect& window, const std::vector<Rect>& rects) {
  std::vector<Rect> result;
  for (const Rect& rect : rects) {
    const Rect visible = intersectionOf(rect, window);
    if (!visible.isEmpty()) result.push_back(visible);
  }
  return result;
}

}  // namespace

Scene::Scene(std::shared_ptr<RootView> root, const TextMeasurer& measurer)
    : root_(std::move(root)),
      measurer_(measurer),
      memory_(std::make_unique<detail::LayoutMemory>()) {}

Scene::~Scene() = default;

std::vector<Rect> Scene::update(Date now, Size size) {
  View view = reconciled(view_, root_->body(now, size));
  const bool resized = !shown_ || size != size_;
  if (!resized && &view.node() == &view_.node()) return {};
  if (!resized) {
    if (auto changed = detail::exchangeTexts(*memory_, layout_, view_, view, measurer_)) {
      view_ = std::move(view);
      return within({0, 0, size_.width, size_.height}, *changed);
    }
  }
  Layout fresh = detail::layoutWith(*memory_, layout_, view, size, measurer_);
  view_ = std::move(view);
  size_ = size;
  shown_ = true;
  memory_->sweep();
  return show(std::move(fresh), resized);
}

std::vector<Rect> Scene::show(Layout fresh, bool resized) {
  const Rect window{0, 0, size_.width, size_.height};
  const Layout before = std::exchange(layout_, std::move(fresh));
  const Rect boundsBefore = std::exchange(bounds_, intersectionOf(boundsOf(layout_.list), window));
  // At another size, what was cut off at the edge before may now be seen without having changed.
  if (resized) return within(window, {unionOf(boundsBefore, bounds_)});
  return within(window, damage(before.list, layout_.list));
}

}  // namespace orvane
