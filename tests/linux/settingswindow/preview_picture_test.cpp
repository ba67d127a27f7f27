#include "linux/settingswindow/preview_picture.h"

#include <gtest/gtest.h>

#include <cstring>

#include "fakes/cell_measurer.h"

namespace orvane::host {
namespace {

// Fills every pixel of the damage with the colour of the list's first fill.
class FillingPainter final : public Painter {
 public:
  void paint(const DisplayList& list, const PaintTarget& target,
             const std::vector<PixelRect>& damage) override {
    items = list.size();
    scale = target.scale;
    ASSERT_EQ(damage.size(), 1U);
    for (int row = 0; row < target.pixels.height; ++row) {
      auto* pixels = target.pixels.data + row * target.pixels.stride;
      for (int byte = 0; byte < target.pixels.width * 4; ++byte) {
        pixels[byte] = static_cast<std::uint8_t>(row + 1);
      }
    }
  }
  std::size_t items = 0;
  double scale = 0;
};

TEST(PreviewPicture, IsWhatThePainterMakesOfTheLaidOutView) {
  const fakes::CellMeasurer measurer;
  FillingPainter painter;
  const auto draw = previewDrawing(measurer, painter);
  const FormPreview preview{filled(Shape::rectangle(), Color::black()), {4, 2.5}};
  const auto picture = draw(preview, 1.5);
  EXPECT_EQ(picture.width, 6U);
  EXPECT_EQ(picture.height, 4U);
  EXPECT_EQ(painter.items, 1U);
  EXPECT_EQ(painter.scale, 1.5);
  std::string expected;
  for (char row = 1; row <= 4; ++row) expected += std::string(24, row);
  EXPECT_EQ(picture.pixels, expected);
}

TEST(PreviewPicture, OfNoSizeOrAnAbsurdOneIsEmpty) {
  const fakes::CellMeasurer measurer;
  FillingPainter painter;
  const auto draw = previewDrawing(measurer, painter);
  for (const Size size : {Size{0, 10}, Size{10, 0.2}, Size{9000, 10}, Size{10, 1e12}}) {
    const auto picture = draw({View(), size}, 1);
    EXPECT_EQ(picture.width, 0U);
    EXPECT_EQ(picture.pixels, "");
  }
}

}  // namespace
}  // namespace orvane::host
