#pragma once

#include <memory>
#include <vector>

#include "view/display_list.h"
#include "view/layout.h"
#include "view/measuring_cache.h"
#include "view/root_view.h"

namespace orvane {

namespace detail {
class LayoutMemory;  // layout_pass.h
}

// One root view shown at one size: keeps what was last laid out, so that the next instant costs
// only what differs. Used by every window and by pictures alike.
class Scene {
 public:
  // The measurer must outlive the scene.
  Scene(std::shared_ptr<RootView> root, const TextMeasurer& measurer);
  Scene(Scene&&) = delete;
  ~Scene();

  // Builds, lays out and compares. Answers the rectangles, in points, in which the new picture
  // differs from the one after the previous update (all of it, the first time). Items beyond the
  // size are laid out but lie outside bounds().
  std::vector<Rect> update(Date now, Size size);

  [[nodiscard]] const DisplayList& list() const { return layout_.list; }
  [[nodiscard]] const Layout& layout() const { return layout_; }
  // What is drawn and lies within the size: the part of the plane that needs pixels.
  [[nodiscard]] Rect bounds() const { return bounds_; }
  [[nodiscard]] RootView& root() { return *root_; }

 private:
  std::vector<Rect> show(Layout fresh, bool resized);

  std::shared_ptr<RootView> root_;
  MeasuringCache measurer_;
  std::unique_ptr<detail::LayoutMemory> memory_;
  View view_;
  Size size_;
  Layout layout_;
  Rect bounds_;
  bool shown_ = false;
};

}  // namespace orvane
