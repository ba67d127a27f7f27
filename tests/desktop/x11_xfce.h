#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <vector>

#include "x11_observer.h"
#include "x11_session.h"

namespace orvane::desktop_test {

// Xfce with its window manager and its desktop, whose picture stands before the test begins. The
// parameter tells whether the window manager composes.
class OnXfce : public testing::TestWithParam<bool> {
 protected:
  OnXfce();

  // Whether a press of the right button at a place makes the desktop open its menu.
  bool opensDesktopMenu(int x, int y, Milliseconds limit);

  // Where each stands from the bottom: the desktop's window, the board, an ordinary window. Empty
  // when one of them is not there.
  [[nodiscard]] std::vector<std::ptrdiff_t> order(xcb_window_t ordinary) const;
  [[nodiscard]] bool standsBetween(xcb_window_t ordinary) const;

  Session session_;
  Observer observer_{session_.display()};
  Picture before_;
};

inline std::string compositingName(const testing::TestParamInfo<bool>& tested) {
  return tested.param ? "On" : "Off";
}

}  // namespace orvane::desktop_test
