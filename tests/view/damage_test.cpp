#include "view/damage.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace orvane {
namespace {

using Rects = std::vector<Rect>;

DisplayItem fill(Rect frame, Color color = Color::red(), double opacity = 1) {
  return {frame, opacity, FillItem{Shape::rectangle(), color}};
}

// Ten points a character, at (100, 50), 20 high.
DisplayItem clock(const std::string& text, double opacity = 1, Color color = Color::white()) {
  TextItem item{text, {{20}}, color, 15, std::vector<double>(text.size(), 10.0)};
  return {{100, 50, 10.0 * static_cast<double>(text.size()), 20}, opacity, item};
}

DisplayItem group(double opacity, std::optional<Shape> clip = std::nullopt,
                  Rect frame = {0, 0, 200, 200}) {
  return {frame, 1, GroupBegin{opacity, clip}};
}
const DisplayItem end{{0, 0, 200, 200}, 1, GroupEnd{}};

TEST(Damage, NothingWhereNothingDiffers) {
  const DisplayList list{fill({0, 0, 10, 10}), group(0.5), clock("12:34:56", 0.5), end};
  EXPECT_EQ(damage(list, list), Rects{});
  EXPECT_EQ(damage({}, {}), Rects{});
}

TEST(Damage, OnlyTheCellsThatDiffer) {
  const DisplayItem panel = fill({0, 0, 300, 200});
  EXPECT_EQ(damage({panel, clock("12:34:56")}, {panel, clock("12:34:57")}),
            (Rects{{169, 49, 12, 22}}));
}

TEST(Damage, NeighbouringCellsAreOneRectangle) {
  EXPECT_EQ(damage({clock("12:34:59")}, {clock("12:35:00")}),
            (Rects{{139, 49, 12, 22}, {159, 49, 22, 22}}));
}

TEST(Damage, ATextOfAnotherColourOrLengthIsAllDifferent) {
  const DisplayItem before = clock("12:34");
  EXPECT_EQ(damage({before}, {clock("12:34", 1, Color::red())}), Rects{before.bounds()});
  const auto longer = clock("112:34");
  EXPECT_EQ(damage({before}, {longer}), Rects{longer.bounds()});
}

TEST(Damage, AMovedItemLeavesItsOldPlaceAndTakesItsNew) {
  EXPECT_EQ(damage({fill({0, 0, 10, 10})}, {fill({50, 50, 10, 10})}),
            (Rects{{0, 0, 10, 10}, {50, 50, 10, 10}}));
}

TEST(Damage, AnItemThatCameOrWent) {
  const DisplayItem first = fill({0, 0, 10, 10});
  const DisplayItem middle = fill({20, 0, 10, 10});
  const DisplayItem last = fill({40, 0, 10, 10});
  EXPECT_EQ(damage({first, last}, {first, middle, last}), Rects{middle.frame});
  EXPECT_EQ(damage({first, middle, last}, {first, last}), Rects{middle.frame});
  EXPECT_EQ(damage({}, {first}), Rects{first.frame});
}

TEST(Damage, NoneForWhatIsInvisible) {
  EXPECT_EQ(damage({group(0), clock("12:34:56", 0), end}, {group(0), clock("12:34:57", 0), end}),
            Rects{});
  EXPECT_EQ(damage({fill({0, 0, 10, 10}, Color::clear())}, {fill({0, 0, 20, 20}, Color::clear())}),
            Rects{});
}

TEST(Damage, AGroupThatFadesOutTakesAllItsContents) {
  const DisplayList before{fill({0, 0, 5, 5}), group(0.5), fill({10, 0, 10, 10}, Color::red(), 0.5),
                           end};
  const DisplayList after{fill({0, 0, 5, 5}), group(0), fill({10, 0, 10, 10}, Color::red(), 0),
                          end};
  EXPECT_EQ(damage(before, after), (Rects{{10, 0, 10, 10}}));
}

TEST(Damage, AGroupThatComesAroundItemsRepaintsThemOnly) {
  const DisplayItem outside = fill({100, 100, 5, 5});
  const DisplayList before{outside, fill({10, 0, 10, 10}), outside};
  const DisplayList after{outside, group(0.5), fill({10, 0, 10, 10}, Color::red(), 0.5), end,
                          outside};
  EXPECT_EQ(damage(before, after), (Rects{{10, 0, 10, 10}}));
}

TEST(Damage, AnotherClipRepaintsWhatIsInIt) {
  const DisplayItem content = fill({10, 0, 10, 10});
  const DisplayItem outside = fill({100, 100, 5, 5});
  EXPECT_EQ(damage({outside, group(1, Shape::rectangle()), content, end, outside},
                   {outside, group(1, Shape::circle()), content, end, outside}),
            Rects{content.frame});
}

TEST(Damage, ItemsThatAreGroupedApartAreAllRepainted) {
  const DisplayItem a = fill({0, 0, 10, 10}, Color::red(), 0.5);
  const DisplayItem b = fill({5, 0, 10, 10}, Color::red(), 0.5);
  EXPECT_EQ(damage({group(0.5), a, end, group(0.5), b, end}, {group(0.5), a, b, end}),
            (Rects{{0, 0, 15, 10}}));
}

TEST(Damage, RectanglesThatMeetBecomeOne) {
  EXPECT_EQ(damage({fill({0, 0, 10, 10}), fill({5, 5, 10, 10}), fill({50, 0, 5, 5})},
                   {fill({0, 0, 10, 10}, Color::cyan()), fill({5, 5, 10, 10}, Color::cyan()),
                    fill({50, 0, 5, 5}, Color::cyan())}),
            (Rects{{0, 0, 15, 15}, {50, 0, 5, 5}}));
}

TEST(Damage, StaysAFewRectanglesWhateverDiffers) {
  DisplayList before;
  DisplayList after;
  for (int index = 0; index < 200; ++index) {
    before.push_back(fill({20.0 * (index % 10), 20.0 * index, 10, 10}));
    after.push_back(fill({20.0 * (index % 10), 20.0 * index, 10, 10}, Color::cyan()));
  }
  const auto rects = damage(before, after);
  EXPECT_LE(rects.size(), 16U);
  for (const auto& item : before) {
    EXPECT_TRUE(std::any_of(rects.begin(), rects.end(),
                            [&](const Rect& rect) { return rect.contains(item.frame); }));
  }
}

}  // namespace
}  // namespace orvane
