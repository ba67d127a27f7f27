#include "linux/settingswindow/preview_picture.h"

#include <cmath>

#include "view/layout.h"

namespace orvane::host {
namespace {

// A side that is longer is a mistake, and would cost a lot of memory.
constexpr double kLongestSide = 8192;

bool isDrawable(double side) { return side >= 1 && side <= kLongestSide; }

}  // namespace

DrawPreview previewDrawing(const TextMeasurer& measurer, Painter& painter) {
  return [&measurer, &painter](const FormPreview& preview, double scale) {
    PreviewPicture picture;
    const double width = std::round(preview.size.width * scale);
    const double height = std::round(preview.size.height * scale);
    if (!isDrawable(width) || !isDrawable(height)) return picture;
    picture.width = static_cast<std::uint32_t>(width);
    picture.height = static_cast<std::uint32_t>(height);
    picture.pixels.resize(std::size_t{picture.width} * picture.height * 4);
    PaintTarget target;
    target.pixels = {reinterpret_cast<std::uint8_t*>(picture.pixels.data()),
                     static_cast<int>(picture.width), static_cast<int>(picture.height),
                     static_cast<int>(picture.width * 4)};
    target.scale = scale;
    painter.paint(layout(preview.view, preview.size, measurer).list, target,
                  {{0, 0, target.pixels.width, target.pixels.height}});
    return picture;
  };
}

}  // namespace orvane::host
