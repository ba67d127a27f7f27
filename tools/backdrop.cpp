#include "backdrop.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <optional>

namespace orvane::tools {
namespace {

using host::Picture;

constexpr std::uint32_t opaque = 0xFF000000U;

std::optional<std::uint32_t> colorFrom(const std::string& text) {
  if (text.size() != 7 || text.front() != '#') return std::nullopt;
  std::uint32_t color = 0;
  const auto [end, error] = std::from_chars(text.data() + 1, text.data() + 7, color, 16);
  if (error != std::errc() || end != text.data() + 7) return std::nullopt;
  return opaque | color;
}

// The mean of four neighbours, weighted by nearness.
class Sampler {
 public:
  explicit Sampler(const Picture& picture) : picture_(picture) {}

  [[nodiscard]] std::uint32_t at(double x, double y) const {
    const double left = std::floor(x - 0.5);
    const double top = std::floor(y - 0.5);
    const double right = x - 0.5 - left;
    const double bottom = y - 0.5 - top;
    std::array<double, 3> sum{};
    add(sum, left, top, (1 - right) * (1 - bottom));
    add(sum, left + 1, top, right * (1 - bottom));
    add(sum, left, top + 1, (1 - right) * bottom);
    add(sum, left + 1, top + 1, right * bottom);
    std::uint32_t color = opaque;
    for (std::size_t i = 0; i < 3; ++i) {
      const auto byte = static_cast<std::uint32_t>(std::clamp(std::lround(sum[i]), 0L, 255L));
      color |= byte << (8 * i);
    }
    return color;
  }

 private:
  void add(std::array<double, 3>& sum, double x, double y, double weight) const {
    const int column = std::clamp(static_cast<int>(x), 0, picture_.width - 1);
    const int row = std::clamp(static_cast<int>(y), 0, picture_.height - 1);
    const auto index = static_cast<std::size_t>(row) * static_cast<std::size_t>(picture_.width) +
                       static_cast<std::size_t>(column);
    const std::uint32_t pixel = picture_.pixels[index];
    for (std::size_t i = 0; i < 3; ++i) sum[i] += weight * ((pixel >> (8 * i)) & 0xFF);
  }

  const Picture& picture_;
};

Picture scaledToFill(const Picture& source, int width, int height) {
  Picture picture(width, height);
  const double scale = std::max(static_cast<double>(width) / source.width,
                                static_cast<double>(height) / source.height);
  const double left = (source.width - width / scale) / 2;
  const double top = (source.height - height / scale) / 2;
  const Sampler sampler(source);
  auto pixel = picture.pixels.begin();
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      *pixel++ = sampler.at(left + (x + 0.5) / scale, top + (y + 0.5) / scale);
    }
  }
  return picture;
}

}  // namespace

std::variant<Picture, std::string> makeBackdrop(const std::string& background, int width,
                                                int height) {
  if (const auto color = colorFrom(background)) {
    Picture picture(width, height);
    std::fill(picture.pixels.begin(), picture.pixels.end(), *color);
    return picture;
  }
  if (background.starts_with('#')) return "\"" + background + "\" is no colour like #203040";
  // Others, such as a pipe, might be waited for without end.
  std::error_code unknown;
  if (!std::filesystem::is_regular_file(background, unknown)) {
    return "there is no picture \"" + background + "\"";
  }
  auto read = host::readPNG(background);
  if (const auto* error = std::get_if<host::PictureError>(&read)) return error->message;
  const auto& source = std::get<Picture>(read);
  if (source.width < 1 || source.height < 1) return "\"" + background + "\" is an empty picture";
  return scaledToFill(source, width, height);
}

}  // namespace orvane::tools
