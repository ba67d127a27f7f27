#include "linux/x11/window_hints.h"

#include <gtest/gtest.h>

#include <string>

namespace orvane::host::x11 {
namespace {

constexpr WindowHints unmanaged{true, WindowType::desktop, true, false};

struct Case {
  const char* manager;
  bool hasDesktopWindow;
  WindowHints onAll;
  WindowHints onOne;
};

class Hints : public testing::TestWithParam<Case> {};

TEST_P(Hints, AreThoseOfTheManager) {
  const auto& row = GetParam();
  EXPECT_EQ(hintsFor(row.manager, row.hasDesktopWindow), row.onAll);
  EXPECT_EQ(hintsFor(row.manager, row.hasDesktopWindow, Workspaces::one), row.onOne);
}

constexpr WindowHints desktopBelow{false, WindowType::desktop, true, false};
constexpr WindowHints dockBelow{false, WindowType::dock, true, false};
constexpr WindowHints utilityBelow{false, WindowType::utility, true, false};
constexpr WindowHints splashBelow{false, WindowType::splash, true, false};
constexpr WindowHints desktopAlone{false, WindowType::desktop, false, false};

INSTANTIATE_TEST_SUITE_P(Table, Hints,
                         testing::Values(Case{"", false, unmanaged, unmanaged},
                                         Case{"", true, unmanaged, unmanaged},
                                         Case{"Xfwm4", true, desktopBelow, utilityBelow},
                                         Case{"Xfwm4", false, desktopBelow, utilityBelow},
                                         Case{"GNOME Shell", true, desktopBelow, utilityBelow},
                                         Case{"Mutter", false, desktopBelow, utilityBelow},
                                         Case{"Mutter (Muffin)", true, dockBelow, utilityBelow},
                                         Case{"Muffin", true, dockBelow, utilityBelow},
                                         Case{"Metacity (Marco)", true, dockBelow, utilityBelow},
                                         Case{"Marco", true, dockBelow, utilityBelow},
                                         Case{"Openbox", false, desktopAlone, splashBelow},
                                         Case{"Openbox", true, splashBelow, splashBelow},
                                         Case{"KWin", true, utilityBelow, utilityBelow},
                                         Case{"i3", false, unmanaged, unmanaged},
                                         Case{"bspwm", false, unmanaged, unmanaged},
                                         Case{"awesome", true, unmanaged, unmanaged},
                                         Case{"Something new", true, utilityBelow, utilityBelow}));

TEST(RaisedHints, AreAboveTheOthersOrUnmanaged) {
  EXPECT_EQ(hintsForRaised("Xfwm4"), (WindowHints{false, WindowType::utility, false, true}));
  EXPECT_EQ(hintsForRaised(""), (WindowHints{true, WindowType::utility, false, true}));
}

TEST(HintsOfManagers, OnlyTheBeginningOfANameCountsWhateverItsCase) {
  EXPECT_EQ(hintsFor("XFWM4 4.20", true), desktopBelow);
  EXPECT_EQ(hintsFor("not i3", true), utilityBelow);
}

}  // namespace
}  // namespace orvane::host::x11
