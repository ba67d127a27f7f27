#pragma once

#include <memory>

#include "linux/paint/fonts.h"
#include "view/painter.h"

namespace orvane::host {

// What it keeps between calls stays below two megabytes at any scale.
std::unique_ptr<Painter> makePainter(std::shared_ptr<Typesetter> typesetter);

}  // namespace orvane::host
