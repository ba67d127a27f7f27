#include "linux/statusitem/status_icon.h"

#include <array>

#include "view/display_list.h"
#include "view/symbols.h"

namespace orvane::host::statusitem {
namespace {

// Logical panel sizes at scale 1 and 2 (22 is the status area's own unit).
constexpr std::array<int, 5> kSides = {16, 22, 24, 32, 48};
constexpr double kEdgeOpacity = 0.35;

// The size of the font whose symbols are as high as wanted.
double fontSizeFor(const std::string& name, double height) {
  const Font probe{100, FontWeight::semibold, FontDesign::standard, false};
  return 100 * height / symbolSize(name, probe).height;
}

DisplayItem symbol(const std::string& name, double side, Color color, Point offset) {
  const double height = side * 0.86;
  const Font font{fontSizeFor(name, height), FontWeight::semibold, FontDesign::standard, false};
  const Size size = symbolSize(name, font);
  const Rect frame{(side - size.width) / 2 + offset.x, (side - size.height) / 2 + offset.y,
                   size.width, size.height};
  return {frame, 1, SymbolItem{name, font, color}};
}

DisplayList drawing(const std::string& name, double side) {
  const double step = side / 22;
  DisplayList list;
  for (const auto& offset : {Point{-step, 0}, Point{step, 0}, Point{0, -step}, Point{0, step}}) {
    list.push_back(symbol(name, side, Color::srgb(0, 0, 0, kEdgeOpacity), offset));
  }
  list.push_back(symbol(name, side, Color::srgb(0.93, 0.94, 0.96), {}));
  return list;
}

std::uint8_t straight(unsigned premultiplied, unsigned alpha) {
  return static_cast<std::uint8_t>(alpha == 0 ? 0 : (premultiplied * 255 + alpha / 2) / alpha);
}

IconPixels painted(const std::string& name, int side, Painter& painter) {
  std::vector<std::uint32_t> pixels(static_cast<std::size_t>(side) * side, 0);
  PaintTarget target;
  target.pixels = {reinterpret_cast<std::uint8_t*>(pixels.data()), side, side, side * 4};
  painter.paint(drawing(name, side), target, {{0, 0, side, side}});
  IconPixels icon{side, {}};
  icon.argb.reserve(pixels.size() * 4);
  for (const auto pixel : pixels) {
    const unsigned alpha = pixel >> 24U;
    icon.argb.push_back(static_cast<std::uint8_t>(alpha));
    for (const unsigned shift : {16U, 8U, 0U}) {
      icon.argb.push_back(straight((pixel >> shift) & 0xFFU, alpha));
    }
  }
  return icon;
}

}  // namespace

bool hasSymbol(const std::string& name) {
  const auto drawing = symbolDrawing(name);
  return !drawing.strokes.empty() || !drawing.fills.empty();
}

std::vector<IconPixels> symbolPixels(const std::string& name, Painter& painter) {
  std::vector<IconPixels> all;
  all.reserve(kSides.size());
  for (const int side : kSides) all.push_back(painted(name, side, painter));
  return all;
}

}  // namespace orvane::host::statusitem
