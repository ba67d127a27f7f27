#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "foundation/color.h"
#include "view/font.h"
#include "view/geometry.h"
#include "view/shape.h"

namespace orvane {

enum class HorizontalAlignment : std::uint8_t { leading, center, trailing };
enum class VerticalAlignment : std::uint8_t { top, center, bottom, firstTextBaseline };

struct Alignment {
  HorizontalAlignment horizontal = HorizontalAlignment::center;
  VerticalAlignment vertical = VerticalAlignment::center;

  static constexpr Alignment center() { return {}; }
  static constexpr Alignment leading() {
    return {HorizontalAlignment::leading, VerticalAlignment::center};
  }
  static constexpr Alignment topLeading() {
    return {HorizontalAlignment::leading, VerticalAlignment::top};
  }
  friend bool operator==(const Alignment&, const Alignment&) = default;
};

namespace detail {
struct ViewNode;  // view_node.h, known to the layout only
}

// A description of something on the screen: a plain, immutable value. Copying is cheap, equal
// descriptions compare equal, and modifiers answer a new view. In the order in which they are
// applied, modifiers wrap what stands before them.
class View {
 public:
  View();  // an empty view, which takes no space

  // ---- Text (on other views these change nothing)
  [[nodiscard]] View font(Font font) const;
  [[nodiscard]] View foreground(Color color) const;  // also for symbols
  [[nodiscard]] View uppercase() const;
  [[nodiscard]] View lineLimit(int lines) const;
  // How far the text may shrink, as a part of its size, before it is cut. Needs a line limit.
  [[nodiscard]] View minimumScaleFactor(double factor) const;

  // ---- Any view
  [[nodiscard]] View padding(double allSides) const;
  [[nodiscard]] View padding(EdgeInsets insets) const;
  // A frame of exactly this size along the axes that are given.
  [[nodiscard]] View frame(std::optional<double> width, std::optional<double> height,
                           Alignment alignment = Alignment::center()) const;
  struct FlexibleFrame {
    std::optional<double> minWidth = std::nullopt;
    std::optional<double> maxWidth = std::nullopt;  // infinity: as wide as is offered
    std::optional<double> minHeight = std::nullopt;
    std::optional<double> maxHeight = std::nullopt;
    Alignment alignment = Alignment::center();
    friend bool operator==(const FlexibleFrame&, const FlexibleFrame&) = default;
  };
  [[nodiscard]] View frame(FlexibleFrame frame) const;
  [[nodiscard]] View background(View behind) const;  // laid out in this view's own size
  [[nodiscard]] View overlay(View inFront) const;
  [[nodiscard]] View opacity(double opacity) const;  // of this view as one picture
  [[nodiscard]] View clipped(Shape shape) const;
  // A shadow of the given shape in this view's own size, behind it and only outside the shape.
  [[nodiscard]] View shadow(Shape shape, Color color, double radius, Point offset) const;
  // A name under which the layout tells this view's frame.
  [[nodiscard]] View named(std::string name) const;

  [[nodiscard]] const detail::ViewNode& node() const { return *node_; }
  // How many copies of the view there are, alone or within other views.
  [[nodiscard]] long copies() const { return node_.use_count(); }
  explicit View(std::shared_ptr<const detail::ViewNode> node) : node_(std::move(node)) {}
  friend bool operator==(const View& a, const View& b);

 private:
  std::shared_ptr<const detail::ViewNode> node_;
};

[[nodiscard]] View text(std::string content);
[[nodiscard]] View symbol(std::string name);  // one of symbols.h; sized by font()
[[nodiscard]] View spacer(double minLength = 0);
// Shapes and fills take all the space they are offered.
[[nodiscard]] View filled(Shape shape, Fill fill);
[[nodiscard]] View stroked(Shape shape, Color color, double lineWidth);  // inside the outline

struct VStack {
  HorizontalAlignment alignment = HorizontalAlignment::center;
  std::optional<double> spacing = std::nullopt;  // absent: the default spacing
};
struct HStack {
  VerticalAlignment alignment = VerticalAlignment::center;
  std::optional<double> spacing = std::nullopt;
};
[[nodiscard]] View vstack(VStack stack, std::vector<View> children);
[[nodiscard]] View hstack(HStack stack, std::vector<View> children);
// Layered, the first child at the back.
[[nodiscard]] View zstack(Alignment alignment, std::vector<View> children);

}  // namespace orvane
