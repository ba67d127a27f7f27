#include "view/view.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

View sample() {
  return vstack({HorizontalAlignment::leading, 6},
                {text("Title").font({15, FontWeight::semibold}).lineLimit(2),
                 hstack({}, {symbol("calendar"), spacer(), text("2d 5h")})})
      .padding(20)
      .background(filled(Shape::roundedRectangle(8, true), Color::white().opacity(0.5)))
      .named("card");
}

TEST(ViewValues, EqualDescriptionsCompareEqual) {
  EXPECT_EQ(sample(), sample());
  EXPECT_FALSE(sample() == sample().padding(0));
  EXPECT_FALSE(text("a") == text("b"));
  EXPECT_FALSE(text("a") == symbol("a"));
  EXPECT_EQ(View(), View());
}

TEST(ViewValues, TextModifiersChangeNothingOnOtherViews) {
  const View padded = text("a").padding(1);
  EXPECT_EQ(padded.font({40}).foreground(Color::red()).uppercase().lineLimit(1), padded);
  EXPECT_EQ(spacer().minimumScaleFactor(0.5), spacer());
}

TEST(ViewValues, AModifierLeavesTheOriginalAsItWas) {
  const View plain = text("a");
  const View red = plain.foreground(Color::red());
  EXPECT_EQ(plain, text("a"));
  EXPECT_FALSE(red == plain);
}

}  // namespace
}  // namespace orvane
