#include "linux/wayland/screens.h"

#include <gtest/gtest.h>

namespace orvane::host::wayland {
namespace {

OutputDescription output(std::string connector, double x = 0, double y = 0) {
  return {std::move(connector), "Maker", "Model", {x, y, 1920, 1080}, 1};
}

TEST(ScreenNumberTest, IsTheSameInEveryRun) { EXPECT_EQ(screenNumber(output("DP-1")), 320293822); }

TEST(ScreenNumberTest, IsPositiveAndOf31Bits) {
  for (int i = 0; i < 1000; ++i) {
    const auto number = screenNumber(output("DP-" + std::to_string(i)));
    ASSERT_GT(number, 0);
    ASSERT_LE(number, 0x7fffffff);
  }
}

TEST(ScreenNumberTest, DependsOnConnectorMakeAndModelAndNothingElse) {
  const auto number = screenNumber(output("DP-1"));
  EXPECT_EQ(screenNumber({"DP-1", "Maker", "Model", {5, 5, 10, 10}, 2}), number);
  EXPECT_NE(screenNumber({"DP-2", "Maker", "Model", {}, 1}), number);
  EXPECT_NE(screenNumber({"DP-1", "MakerM", "odel", {}, 1}), number);
  EXPECT_NE(screenNumber({"DP-1", "Maker", "Model 2", {}, 1}), number);
}

TEST(ScreenNumberTest, IsMissingWithoutAConnector) {
  EXPECT_EQ(screenNumber(output("")), std::nullopt);
}

TEST(MainOutputTest, LiesNearestToTheOrigin) {
  EXPECT_EQ(mainOutput({output("A", 1920), output("B"), output("C", 0, 1080)}), 1U);
  EXPECT_EQ(mainOutput({output("A", -1920), output("B", 200, 100)}), 1U);
}

TEST(MainOutputTest, IsTheOneWhoseConnectorSortsFirstWhereTwoLieAlike) {
  EXPECT_EQ(mainOutput({output("HDMI-1"), output("DP-1")}), 1U);
  EXPECT_EQ(mainOutput({output("A", -100), output("B", 100)}), 0U);
}

TEST(MainOutputTest, IsTheFirstOfTheCompositorsOwnOrder) {
  EXPECT_EQ(mainOutput({output("A"), output("B", 1920), output("C", 3840)}, {"C", "A", "B"}), 2U);
  EXPECT_EQ(mainOutput({output("A"), output("B", 1920)}, {"gone", "B", "A"}), 1U);
}

TEST(MainOutputTest, LiesNearestToTheOriginWhereTheOrderNamesNone) {
  EXPECT_EQ(mainOutput({output("A", 1920), output("B")}, {"gone"}), 1U);
  EXPECT_EQ(mainOutput({}, {"gone"}), std::nullopt);
}

TEST(RedundantOutputTest, OneThatLiesWithinAnother) {
  const std::vector outputs{output("A"), output("B", 1920)};
  EXPECT_FALSE(isRedundant(0, outputs, {}));
  EXPECT_FALSE(isRedundant(1, outputs, {}));
  auto smaller = output("C", 1920);
  smaller.frame.width = 800;
  EXPECT_TRUE(isRedundant(2, {outputs[0], outputs[1], smaller}, {"C", "A", "B"}));
  EXPECT_FALSE(isRedundant(1, {outputs[0], outputs[1], smaller}, {"C", "A", "B"}));
}

TEST(RedundantOutputTest, OfMirroredOnesAllButTheFirst) {
  const std::vector outputs{output("A"), output("B"), output("C")};
  EXPECT_FALSE(isRedundant(0, outputs, {}));
  EXPECT_TRUE(isRedundant(1, outputs, {}));
  EXPECT_TRUE(isRedundant(2, outputs, {}));
  EXPECT_TRUE(isRedundant(0, outputs, {"C", "B", "A"}));
  EXPECT_FALSE(isRedundant(2, outputs, {"C", "B", "A"}));
}

TEST(MainOutputTest, IsNoneWhereThereIsNone) { EXPECT_EQ(mainOutput({}), std::nullopt); }

}  // namespace
}  // namespace orvane::host::wayland
