#include "view/scene.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

#include "fakes/cell_measurer.h"
#include "view/damage.h"

namespace orvane {
namespace {

using Rects = std::vector<Rect>;

// Shows whatever the test gives it.
class GivenView final : public RootView {
 public:
  View view;
  View body(Date, Size) override { return view; }
  Subscription onWillChange(std::function<void()>) override { return {}; }
};

class SceneTest : public testing::Test {
 protected:
  fakes::CellMeasurer measurer;
  std::shared_ptr<GivenView> root = std::make_shared<GivenView>();
  Scene scene{root, measurer};

  Rects show(View view, Size size = {200, 100}) {
    root->view = std::move(view);
    return scene.update({0}, size);
  }

  static View clock(const std::string& digits) {
    return text(digits).font({10, FontWeight::bold, FontDesign::rounded, true}).lineLimit(1);
  }
  static View row(int index) {
    return hstack({}, {text("row " + std::to_string(index)), spacer(), symbol("calendar")});
  }
  static View board(const std::string& digits, int rows) {
    std::vector<View> children{clock(digits)};
    for (int index = 0; index < rows; ++index) children.push_back(row(index));
    return vstack({HorizontalAlignment::leading, 4}, std::move(children))
        .padding(10)
        .frame(200, 100, Alignment::topLeading());
  }
};

TEST_F(SceneTest, TheFirstUpdateIsAllOfIt) {
  const Rects shown = show(board("12:00", 2));
  EXPECT_EQ(shown, Rects{scene.bounds()});
  EXPECT_FALSE(scene.bounds().isEmpty());
}

TEST_F(SceneTest, AnEqualBodyCostsNothing) {
  show(board("12:00", 2));
  const int measured = measurer.measured();
  EXPECT_EQ(show(board("12:00", 2)), Rects{});
  EXPECT_EQ(measurer.measured(), measured);
}

TEST_F(SceneTest, ATickDamagesTheChangedDigitAndMeasuresNothing) {
  show(board("12:00", 2));
  const int measured = measurer.measured();
  EXPECT_EQ(show(board("12:01", 2)), (Rects{{32, 9, 8, 14}}));
  EXPECT_EQ(measurer.measured(), measured);
}

// What is shared with the pass before must be what a pass without memory would find.
TEST_F(SceneTest, WhatIsKeptEqualsWhatIsMadeAnew) {
  for (int step = 0; step < 60; ++step) {
    const View view = board("12:" + std::to_string(10 + step), step % 7);
    show(step % 5 == 0 ? view.opacity(0.5) : view);
    const Layout anew = layout(root->view, {200, 100}, measurer);
    EXPECT_EQ(describe(scene.list()), describe(anew.list)) << step;
    EXPECT_EQ(scene.layout(), anew) << step;
  }
}

TEST_F(SceneTest, ABodyMayShareItsPartsWithTheOneBefore) {
  const View shared = row(1);
  const auto view = [&](const std::string& digits) {
    return vstack({}, {shared, clock(digits), shared}).frame(200, 100);
  };
  show(view("10:00"));
  show(view("10:01"));
  EXPECT_EQ(scene.layout(), layout(view("10:01"), {200, 100}, measurer));
}

// Exchanged where they stand, or laid out anew: texts must come to lie where a pass puts them, and
// the damage must be what tells the two lists apart.
TEST_F(SceneTest, AnyChangeOfTextsGivesWhatAPassWouldAndItsDamage) {
  std::mt19937 random(11);
  const auto below = [&](unsigned limit) { return random() % limit; };
  const View shared = text("shared");
  const std::array<std::string, 6> words{"", "one", "two", "seven", "12:00", "-9:11"};
  const auto word = [&] {
    const View plain = text(words[below(words.size())]).lineLimit(static_cast<int>(below(2)));
    const View ticking = clock(words[below(words.size())]);
    const Color color = below(4) == 0 ? Color::clear() : Color::cyan();
    return (below(3) == 0 ? ticking : below(6) == 0 ? shared : plain).foreground(color);
  };
  std::vector<View> slots(5, shared);
  for (int step = 0; step < 400; ++step) {
    slots[below(5)] = word();
    if (below(5) == 0) slots[below(5)] = slots[below(5)];
    const View line = hstack({VerticalAlignment::firstTextBaseline}, {slots[0], slots[1]});
    const View column = vstack({}, {line.padding(1), slots[2], line, slots[3].opacity(0.5)})
                            .overlay(slots[4])
                            .background(slots[2].padding(3))
                            .named("column");
    const DisplayList before = scene.list();
    const Rects changed = show(below(20) == 0 ? column.padding(2) : column);
    const Layout anew = layout(root->view, {200, 100}, measurer);
    ASSERT_EQ(describe(scene.list()), describe(anew.list)) << step;
    ASSERT_EQ(scene.layout(), anew) << step;
    if (step == 0) continue;
    Rects expected;
    for (const Rect& rect : damage(before, anew.list)) {
      const Rect visible = intersectionOf(rect, {0, 0, 200, 100});
      if (!visible.isEmpty()) expected.push_back(visible);
    }
    ASSERT_EQ(changed, expected) << step;
    ASSERT_EQ(scene.bounds(), intersectionOf(boundsOf(anew.list), {0, 0, 200, 100})) << step;
  }
}

TEST_F(SceneTest, ATickLeavesAllOtherItemsWhereTheyAre) {
  show(board("12:00", 3));
  const auto* row = &scene.list().at(1);
  show(board("12:01", 3));
  // The list is the same one, with another first item.
  EXPECT_EQ(&scene.list().at(1), row);
  EXPECT_EQ(std::get<TextItem>(scene.list().at(0).content).text, "12:01");
}

TEST_F(SceneTest, AnotherMeasureOfATextMovesItsNeighbours) {
  const auto line = [](const std::string& word) {
    return hstack({}, {text(word), text("after")}).frame(200, 100, Alignment::topLeading());
  };
  show(line("ab"));
  const double before = scene.list().at(1).frame.x;
  show(line("abc"));
  EXPECT_GT(scene.list().at(1).frame.x, before);
  show(line("xyz"));
  EXPECT_EQ(scene.layout(), layout(line("xyz"), {200, 100}, measurer));
}

TEST_F(SceneTest, BoundsEndAtTheWindowsEdge) {
  show(filled(Shape::rectangle(), Color::red())
           .frame(500, 30)
           .frame(200, 100, Alignment::topLeading()));
  EXPECT_EQ(scene.bounds(), (Rect{0, 0, 200, 30}));
  EXPECT_EQ(scene.list().at(0).frame.width, 500);
}

TEST_F(SceneTest, DamageEndsAtTheWindowsEdge) {
  const auto bar = [](Color color) {
    return filled(Shape::rectangle(), color)
        .frame(500, 30)
        .frame(200, 100, Alignment::topLeading());
  };
  show(bar(Color::red()));
  EXPECT_EQ(show(bar(Color::cyan())), (Rects{{0, 0, 200, 30}}));
}

TEST_F(SceneTest, ALargerWindowShowsWhatWasCutOff) {
  const View bar = filled(Shape::rectangle(), Color::red()).frame(500, 30);
  const auto held = [&](double width) { return bar.frame(width, 100, Alignment::topLeading()); };
  show(held(200), {200, 100});
  EXPECT_EQ(show(held(400), {400, 100}), (Rects{{0, 0, 400, 30}}));
}

TEST_F(SceneTest, NothingDrawnHasNoBounds) {
  EXPECT_EQ(show(View()), Rects{});
  EXPECT_TRUE(scene.bounds().isEmpty());
}

}  // namespace
}  // namespace orvane
