#pragma once

#include <cstdint>

namespace orvane {

enum class FontWeight : std::uint16_t { regular = 400, semibold = 600, bold = 700 };
// The rounded design falls back to the standard one where no rounded family is installed.
enum class FontDesign : std::uint8_t { standard, rounded };

// The system's user-interface font at a size in points.
struct Font {
  double size = 13;
  FontWeight weight = FontWeight::regular;
  FontDesign design = FontDesign::standard;
  bool monospacedDigits = false;

  friend bool operator==(const Font&, const Font&) = default;
};

}  // namespace orvane
