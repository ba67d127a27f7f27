#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "view/painter.h"

namespace orvane::host {

// A picture that owns its pixels: premultiplied ARGB, rows without gaps.
struct Picture {
  int width = 0;
  int height = 0;
  std::vector<std::uint32_t> pixels;

  Picture() = default;
  // All pixels are clear. Sizes below one give an empty picture.
  Picture(int width, int height);
  // Valid as long as the picture is neither moved nor destroyed.
  [[nodiscard]] PixelBuffer buffer();
};

// A sentence for a person: what failed, with the path.
struct PictureError {
  std::string message;
};

[[nodiscard]] std::variant<Picture, PictureError> readPNG(const std::string& path);
// Nothing, when the picture is on disk.
[[nodiscard]] std::optional<PictureError> writePNG(const Picture& picture, const std::string& path);

}  // namespace orvane::host
