#pragma once

#include <memory>
#include <utility>

#include "foundation/color.h"
#include "view/geometry.h"
#include "view/root_view.h"

namespace orvane {

// How a view follows its window's size; a bit mask.
struct NSAutoresizingMask {
  static constexpr unsigned widthSizable = 0x2;
  static constexpr unsigned heightSizable = 0x10;
};

// A window's content: a hosting view, which shows a tree of view values. A plain record to the
// logic; the window that holds it draws it.
struct NSHostingView {
  explicit NSHostingView(std::shared_ptr<RootView> view) : rootView(std::move(view)) {}

  std::shared_ptr<RootView> rootView;
  Rect frame;
  unsigned autoresizingMask = 0;
  bool translatesAutoresizingMaskIntoConstraints = false;
  bool wantsLayer = false;
  Color layerBackgroundColor = Color::system(SystemColor::black);
};

}  // namespace orvane
