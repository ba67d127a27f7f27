#include "golden.h"

#include <cstdio>
#include <filesystem>

#include "scenes.h"
#include "support/test_paths.h"

namespace orvane::testing_pictures {
namespace {

TEST(Golden, ADarkCard) {
  Studio studio;
  const auto list = cardScene(studio, Theme::dark, "01:23:45");
  EXPECT_TRUE(matchesGolden("card_dark_1x", studio.picture(list, cardSceneSize, 1)));
}

TEST(Golden, ALightCardAtTwoPixelsAPoint) {
  Studio studio;
  const auto list = cardScene(studio, Theme::light, "23:59:07");
  EXPECT_TRUE(matchesGolden("card_light_2x", studio.picture(list, cardSceneSize, 2)));
}

TEST(Golden, TheSymbols) {
  Studio studio;
  EXPECT_TRUE(matchesGolden("symbols_2x", studio.picture(symbolScene(), symbolSceneSize, 2)));
}

// The stored picture shows another second than the scene.
TEST(Golden, AWrongReferenceIsNotAccepted) {
  Studio studio;
  const auto list = cardScene(studio, Theme::dark, "01:23:45");
  EXPECT_FALSE(matchesReference(goldenFolder(), "deliberately_wrong",
                                studio.picture(list, cardSceneSize, 1)));
  EXPECT_TRUE(std::filesystem::exists("golden-failures/deliberately_wrong-difference.png"));
}

TEST(Golden, AMissingReferenceFailsAndLeavesThePictureToBless) {
  const std::string left = "golden-failures/nobody_drew_this-actual.png";
  std::remove(left.c_str());
  EXPECT_FALSE(matchesReference(goldenFolder(), "nobody_drew_this", host::Picture(3, 3)));
  EXPECT_TRUE(std::filesystem::exists(left));
}

}  // namespace
}  // namespace orvane::testing_pictures
