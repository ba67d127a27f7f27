#pragma once

#include <memory>

#include "linux/paint/fonts.h"
#include "view/text_measurer.h"

namespace orvane::host {

// Lengths do not depend on the scale at which texts are drawn later.
std::unique_ptr<TextMeasurer> makeTextMeasurer(std::shared_ptr<Typesetter> typesetter);

}  // namespace orvane::host
