// paint/ measures texts and draws display lists with pango and cairo. What is costly to find out
// or to draw again (extents, glyphs of ticking digits, shadows) is kept, within fixed bounds.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace orvane::host {

struct FontOptions {
  enum class Rendering : std::uint8_t {
    desktop,  // outlines fitted to whole pixels in height, as text on this desktop is
    fixed,    // outlines as they were designed: the same picture on every machine
  };
  std::string family;         // empty: the desktop's font for user interfaces
  std::string roundedFamily;  // empty: `family`, or else a rounded one that is installed
  std::string language;       // BCP 47, for the forms of letters; empty: the process's locale
  Rendering rendering = Rendering::desktop;
};

// The fonts and what is remembered about texts set in them. The measurer and the painters of a
// program share one, so that what is drawn is what was measured. Main thread only.
class Typesetter;
std::shared_ptr<Typesetter> makeTypesetter(const FontOptions& options = {});

}  // namespace orvane::host
