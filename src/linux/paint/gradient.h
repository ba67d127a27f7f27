#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "linux/paint/outline_masks.h"
#include "view/shape.h"

namespace orvane::host {

// Fills outlines with gradients. Colours are a function of a pixel's place alone, so that a part
// that is drawn again comes out as it was, which cairo's own gradients do not promise.
class GradientDrawing {
 public:
  explicit GradientDrawing(OutlineMasks& outlines) : outlines_(outlines) {}

  // Fills the outline's part within `area`, to which drawing is limited.
  void fill(cairo_t* cr, const LinearGradient& gradient, const Outline& outline,
            const PixelRect& area);

 private:
  static constexpr int steps = 1024;
  // Premultiplied pixels, from the first stop to the last.
  struct Ramp {
    LinearGradient gradient;
    std::array<std::uint32_t, steps + 1> colors{};
  };

  static Ramp makeRamp(const LinearGradient& gradient);
  const Ramp& ramp(const LinearGradient& gradient);
  void fillStrip(cairo_t* cr, const Ramp& ramp, const Outline& outline, const PixelRect& strip);

  OutlineMasks& outlines_;
  std::vector<Ramp> ramps_;  // the few that a theme has, the latest last
};

}  // namespace orvane::host
