#include "linux/x11/display_scale.h"

#include <gtest/gtest.h>

namespace orvane::host::x11 {
namespace {

struct Case {
  const char* name;
  const char* resources;
  double scale;
};

class DisplayScale : public testing::TestWithParam<Case> {};

TEST_P(DisplayScale, IsReadFromTheResources) {
  EXPECT_DOUBLE_EQ(displayScale(GetParam().resources), GetParam().scale);
}

INSTANTIATE_TEST_SUITE_P(
    Table, DisplayScale,
    testing::Values(Case{"Nothing", "", 1}, Case{"Ordinary", "Xft.dpi:\t96\n", 1},
                    Case{"Fraction", "Xft.dpi:\t120\n", 1.25},
                    Case{"WithoutLineEnd", "Xft.dpi: 144", 1.5},
                    Case{"Decimal", "Xft.dpi: 110.4\n", 1.15},
                    Case{"BlanksAround", "  Xft.dpi \t: \t192 \r\n", 2},
                    Case{"AmongOthers", "*background: black\nXft.dpi: 192\nXft.hinting: 1\n", 2},
                    Case{"LastOneCounts", "Xft.dpi: 192\nXft.dpi: 120\n", 1.25},
                    Case{"NotANumber", "Xft.dpi: large\n", 1}, Case{"Empty", "Xft.dpi:\n", 1},
                    Case{"Zero", "Xft.dpi: 0\n", 1}, Case{"Negative", "Xft.dpi: -96\n", 1},
                    Case{"Nan", "Xft.dpi: nan\n", 1}, Case{"TooSmall", "Xft.dpi: 10\n", 0.5},
                    Case{"TooLarge", "Xft.dpi: 100000\n", 4}, Case{"Infinite", "Xft.dpi: inf\n", 4},
                    Case{"OtherName", "Xft.dpiX: 192\nmyXft.dpi: 192\n", 1},
                    Case{"WithoutColon", "Xft.dpi 192\n", 1}),
    [](const auto& tested) { return tested.param.name; });

}  // namespace
}  // namespace orvane::host::x11
