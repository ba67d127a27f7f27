#include <array>
#include <cstdio>

#include "view/display_list.h"

namespace orvane {
namespace {

std::string number(double value) {
  std::array<char, 64> digits{};
  std::snprintf(digits.data(), digits.size(), "%.1f", value);
  return std::string(digits.data()) == "-0.0" ? "0.0" : digits.data();
}

// Opacities and colour components, as short as they can be said.
std::string fraction(double value) {
  std::array<char, 64> digits{};
  std::snprintf(digits.data(), digits.size(), "%.4g", value);
  return digits.data();
}

std::string described(const Rect& rect) {
  return "(" + number(rect.x) + " " + number(rect.y) + " " + number(rect.width) + " " +
         number(rect.height) + ")";
}

std::string described(const Color& color) {
  static constexpr std::array names{"red", "orange", "yellow", "cyan", "white", "black"};
  std::string result;
  if (color.isSystem()) {
    result = names[static_cast<std::size_t>(color.systemName())];
  } else {
    const SRGB rgb = color.resolved();
    result = "rgb " + fraction(rgb.red) + " " + fraction(rgb.green) + " " + fraction(rgb.blue);
  }
  return color.opacity() == 1 ? result : result + " at " + fraction(color.opacity());
}

std::string described(const Font& font) {
  std::string result = fraction(font.size);
  if (font.weight == FontWeight::semibold) result += " semibold";
  if (font.weight == FontWeight::bold) result += " bold";
  if (font.design == FontDesign::rounded) result += " rounded";
  if (font.monospacedDigits) result += " digits";
  return result;
}

std::string described(const Shape& shape) {
  switch (shape.kind) {
    case Shape::Kind::rectangle:
      return "rectangle";
    case Shape::Kind::capsule:
      return "capsule";
    case Shape::Kind::circle:
      return "circle";
    case Shape::Kind::roundedRectangle:
      return (shape.continuous ? "continuous " : "rounded ") + fraction(shape.cornerRadius);
  }
  return {};
}

std::string described(const Fill& fill) {
  struct Describe {
    std::string operator()(const Color& color) const { return described(color); }
    std::string operator()(const Material& material) const {
      return "material " + described(material.tint);
    }
    std::string operator()(const LinearGradient& gradient) const {
      std::string result = "gradient";
      for (const Color& stop : gradient.stops) result += " [" + described(stop) + "]";
      return result;
    }
  };
  return std::visit(Describe{}, fill);
}

struct Describe {
  const Rect& frame;

  std::string operator()(const TextItem& item) const {
    std::string result = "text " + described(frame) + " \"" + item.text + "\" " +
                         described(item.style.font) + ", " + described(item.color);
    if (item.style.uppercase) result += ", uppercase";
    if (item.style.lineLimit > 0) result += ", lines " + std::to_string(item.style.lineLimit);
    if (!item.cells.empty()) result += ", cells";
    return result;
  }
  std::string operator()(const SymbolItem& item) const {
    return "symbol " + described(frame) + " " + item.name + " " + described(item.font) + ", " +
           described(item.color);
  }
  std::string operator()(const FillItem& item) const {
    return "fill " + described(frame) + " " + described(item.shape) + ", " + described(item.fill);
  }
  std::string operator()(const StrokeItem& item) const {
    return "stroke " + described(frame) + " " + described(item.shape) + " " +
           fraction(item.lineWidth) + ", " + described(item.color);
  }
  std::string operator()(const ShadowItem& item) const {
    return "shadow " + described(frame) + " " + described(item.shape) + ", " +
           described(item.color) + ", radius " + fraction(item.radius) + ", offset " +
           fraction(item.offset.x) + " " + fraction(item.offset.y);
  }
  std::string operator()(const GroupBegin& group) const {
    std::string result = "group " + described(frame);
    if (group.groupOpacity != 1) result += " at " + fraction(group.groupOpacity);
    if (group.clip) result += " clip " + described(*group.clip);
    return result;
  }
  std::string operator()(const GroupEnd&) const { return "end"; }
};

}  // namespace

std::string describe(const DisplayItem& item) {
  const std::string result = std::visit(Describe{item.frame}, item.content);
  return item.opacity == 1 ? result : result + ", shown at " + fraction(item.opacity);
}

std::string describe(const DisplayList& list) {
  std::string result;
  std::size_t depth = 0;
  for (const DisplayItem& item : list) {
    if (std::holds_alternative<GroupEnd>(item.content) && depth > 0) --depth;
    result += std::string(2 * depth, ' ') + describe(item) + "\n";
    if (std::holds_alternative<GroupBegin>(item.content)) ++depth;
  }
  return result;
}

}  // namespace orvane
