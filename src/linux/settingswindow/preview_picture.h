#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "platform/form.h"
#include "view/painter.h"
#include "view/text_measurer.h"

namespace orvane::host {

// A preview as drawn: premultiplied ARGB, 32 bits a pixel in the machine's byte order, rows without
// gaps.
struct PreviewPicture {
  std::uint32_t width = 0;  // in pixels, like the height; 0 where there is nothing to show
  std::uint32_t height = 0;
  std::string pixels;
};

// Draws a preview at so many pixels a point, which are more than 0.
using DrawPreview = std::function<PreviewPicture(const FormPreview& preview, double scale)>;

// As the board itself is drawn. Measurer and painter must outlive what is answered.
[[nodiscard]] DrawPreview previewDrawing(const TextMeasurer& measurer, Painter& painter);

}  // namespace orvane::host
