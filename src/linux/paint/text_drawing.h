#pragma once

#include "linux/paint/handles.h"
#include "linux/paint/typesetter.h"
#include "view/display_list.h"

namespace orvane::host {

// Draws with the current source, in pixels of the plane. Lines begin and stand on whole pixels;
// glyphs within a line do not, so that their distances are right at any scale. A line lies at the
// side of the frame where its own direction starts.
void drawText(cairo_t* cr, Typesetter& typesetter, const TextItem& text, const Rect& frame,
              double scale);

}  // namespace orvane::host
