// Pictures that must come out the same, however they were drawn.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "picture_comparison.h"
#include "scenes.h"
#include "view/damage.h"

namespace orvane::testing_pictures {
namespace {

constexpr double scales[] = {1, 1.25, 1.5, 2};

DisplayList everything(const Studio& studio, const std::string& countdown = "01:23:45") {
  DisplayList list = cardScene(studio, Theme::dark, countdown);
  for (DisplayItem& symbol : symbolScene()) {
    symbol.frame = symbol.frame.movedBy(0, 60);
    list.push_back(symbol);
  }
  list.push_back(textAt(studio, {30, 160}, "Straße 会議 🏡 שלום", {{15, FontWeight::semibold}},
                        Color::white().opacity(0.8)));
  return list;
}

PixelRect whole(const host::Picture& picture) { return {0, 0, picture.width, picture.height}; }

void scribble(host::Picture& picture, const PixelRect& rect) {
  for (int y = rect.y; y < rect.y + rect.height; ++y)
    for (int x = rect.x; x < rect.x + rect.width; ++x)
      picture.pixels[static_cast<std::size_t>(y * picture.width + x)] = 0xFF00FF00;
}

PixelRect anyRect(std::mt19937& random, const host::Picture& picture) {
  const auto below = [&](int limit) {
    return std::uniform_int_distribution<int>(0, limit - 1)(random);
  };
  const int x = below(picture.width);
  const int y = below(picture.height);
  return {x, y, 1 + below(picture.width - x), 1 + below(picture.height - y)};
}

TEST(Repaint, AnyDamageGivesThePictureThatIsDrawnAtOnce) {
  Studio studio;
  const DisplayList list = everything(studio);
  std::mt19937 random(7);
  for (const double scale : scales) {
    const host::Picture expected = studio.picture(list, cardSceneSize, scale);
    for (int round = 0; round < 12; ++round) {
      host::Picture actual = expected;
      const std::vector<PixelRect> damage{anyRect(random, actual), anyRect(random, actual)};
      for (const PixelRect& rect : damage) scribble(actual, rect);
      studio.painter->paint(list, {actual.buffer(), scale, {}, nullptr}, damage);
      const Comparison result = compare(expected, actual);
      ASSERT_TRUE(result.matches) << result.differences << " differ by up to " << result.largest
                                  << " at scale " << scale << " in round " << round;
    }
  }
}

TEST(Repaint, PixelsOutsideTheDamageAreNotTouched) {
  Studio studio;
  host::Picture picture(300, 190);
  scribble(picture, whole(picture));
  const PixelRect damage{40, 30, 100, 50};
  studio.painter->paint(everything(studio), {picture.buffer(), 1, {}, nullptr}, {damage});
  for (int y = 0; y < picture.height; ++y)
    for (int x = 0; x < picture.width; ++x)
      if (x < 40 || x >= 140 || y < 30 || y >= 80) {
        ASSERT_EQ(picture.pixels[static_cast<std::size_t>(y * 300 + x)], 0xFF00FF00)
            << x << " " << y;
      }
}

TEST(Repaint, TilesGiveTheWhole) {
  Studio studio;
  const DisplayList list = everything(studio);
  for (const double scale : scales) {
    const host::Picture expected = studio.picture(list, cardSceneSize, scale);
    host::Picture tiled(expected.width, expected.height);
    for (int y = 0; y < tiled.height; y += 47)
      for (int x = 0; x < tiled.width; x += 61)
        studio.painter->paint(list, {tiled.buffer(), scale, {}, nullptr}, {{x, y, 61, 47}});
    const Comparison result = compare(expected, tiled);
    EXPECT_TRUE(result.matches) << result.differences << " up to " << result.largest << " at "
                                << scale;
  }
}

TEST(Repaint, ABufferThatShowsAPartShowsThatPart) {
  Studio studio;
  const DisplayList list = everything(studio);
  for (const double scale : scales) {
    const host::Picture all = studio.picture(list, cardSceneSize, scale);
    host::Picture part(150, 111);
    const PixelPoint origin{53, 37};
    studio.painter->paint(list, {part.buffer(), scale, origin, nullptr}, {{53, 37, 150, 111}});
    host::Picture expected(150, 111);
    for (int y = 0; y < 111; ++y)
      for (int x = 0; x < 150; ++x)
        expected.pixels[static_cast<std::size_t>(y * 150 + x)] =
            all.pixels[static_cast<std::size_t>((y + 37) * all.width + x + 53)];
    const Comparison result = compare(expected, part);
    EXPECT_TRUE(result.matches) << result.differences << " up to " << result.largest << " at "
                                << scale;
  }
}

TEST(Repaint, MovingThePlaneByWholePixelsMovesThePicture) {
  Studio studio;
  DisplayList moved = everything(studio);
  for (DisplayItem& each : moved) each.frame = each.frame.movedBy(-1000, 2000);
  host::Picture actual(300, 190);
  studio.painter->paint(moved, {actual.buffer(), 1, {-1000, 2000}, nullptr},
                        {{-1000, 2000, 300, 190}});
  const Comparison result =
      compare(studio.picture(everything(studio), cardSceneSize, 1), actual, {2, 60});
  EXPECT_TRUE(result.matches) << result.differences << " up to " << result.largest;
}

TEST(Repaint, ATickPaintsTheChangedDigitsAndIsWhole) {
  Studio studio;
  for (const double scale : scales) {
    const DisplayList before = everything(studio, "01:23:59");
    const DisplayList after = everything(studio, "01:24:00");
    host::Picture picture = studio.picture(before, cardSceneSize, scale);
    std::vector<PixelRect> rects;
    for (const Rect& rect : damage(before, after)) rects.push_back(pixelsCovering(rect, scale));
    studio.painter->paint(after, {picture.buffer(), scale, {}, nullptr}, rects);
    const Comparison result = compare(studio.picture(after, cardSceneSize, scale), picture);
    EXPECT_TRUE(result.matches) << result.differences << " up to " << result.largest << " at "
                                << scale;
  }
}

// The glass below the digits is kept from tick to tick, but not when it looks different, lies
// elsewhere or is drawn at another scale.
TEST(Repaint, GlassThatIsKeptIsTheGlassThatIsThere) {
  Studio studio;
  const PixelRect piece{60, 70, 40, 50};
  for (const Theme theme : {Theme::dark, Theme::light, Theme::dark}) {
    for (const double scale : scales) {
      for (const double moved : {0.0, 3.0}) {
        DisplayList list = cardScene(studio, theme, "01:23:45");
        for (DisplayItem& each : list) each.frame = each.frame.movedBy(moved, 0);
        Studio another;
        host::Picture picture = another.picture(list, cardSceneSize, scale);
        const host::Picture expected = picture;
        scribble(picture, piece);
        studio.painter->paint(list, {picture.buffer(), scale, {}, nullptr}, {piece});
        const Comparison result = compare(expected, picture);
        EXPECT_TRUE(result.matches) << result.differences << " up to " << result.largest << " at "
                                    << scale << " moved by " << moved;
      }
    }
  }
}

TEST(Repaint, AnotherPainterDrawsTheSame) {
  Studio first;
  Studio second;
  (void)second.picture(symbolScene(), symbolSceneSize, 1.5);
  EXPECT_TRUE(compare(first.picture(everything(first), cardSceneSize, 1.5),
                      second.picture(everything(second), cardSceneSize, 1.5))
                  .matches);
}

// On a backdrop the picture is what compositing it over the backdrop would give.
TEST(Repaint, ABackdropLiesUnderTheDrawing) {
  Studio studio;
  const DisplayList list = everything(studio);
  host::Picture backdrop(300, 190);
  for (std::size_t i = 0; i < backdrop.pixels.size(); ++i)
    backdrop.pixels[i] = i % 3 ? 0xFF336699 : 0xFFCC8844;
  const PixelBuffer under = backdrop.buffer();
  host::Picture actual(300, 190);
  studio.painter->paint(list, {actual.buffer(), 1, {}, &under}, {{0, 0, 300, 190}});

  host::Picture expected = studio.picture(list, cardSceneSize, 1);
  for (std::size_t i = 0; i < expected.pixels.size(); ++i) {
    const std::uint32_t over = expected.pixels[i];
    const std::uint32_t through = 255 - (over >> 24);
    std::uint32_t result = 0;
    for (const int shift : {0, 8, 16, 24}) {
      const std::uint32_t below = backdrop.pixels[i] >> shift & 0xFF;
      result |= std::min(255U, (over >> shift & 0xFF) + (below * through + 127) / 255) << shift;
    }
    expected.pixels[i] = result;
  }
  const Comparison result = compare(expected, actual, {3, 0});
  EXPECT_TRUE(result.matches) << result.differences << " up to " << result.largest;
  for (const std::uint32_t pixel : actual.pixels) ASSERT_EQ(pixel >> 24, 255U);
}

}  // namespace
}  // namespace orvane::testing_pictures
