#pragma once

#include <algorithm>
#include <cstdint>
#include <numeric>

namespace orvane::host::wayland {

// Pixels per point, counted in 120ths as wp_fractional_scale_v1 does.
struct SurfaceScale {
  int per120 = 120;

  static constexpr SurfaceScale whole(int scale) { return {120 * std::clamp(scale, 1, 100)}; }

  [[nodiscard]] constexpr double factor() const { return per120 / 120.0; }
  // Half a pixel counts as one, as the protocol asks.
  [[nodiscard]] constexpr int pixels(int points) const {
    return static_cast<int>((std::int64_t{points} * per120 + 60) / 120);
  }
  // The least number of points that makes a whole number of pixels. Surfaces that begin and end at
  // its multiples lie on the output's pixels and need no smoothing.
  [[nodiscard]] constexpr int step() const { return 120 / std::gcd(120, per120); }

  friend bool operator==(const SurfaceScale&, const SurfaceScale&) = default;
};

}  // namespace orvane::host::wayland
