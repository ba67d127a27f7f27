#pragma once

#include "view/view.h"

namespace orvane {

// A view equal to `fresh` that shares every part which has not changed with `before`, so that what
// is known of those parts still holds.
View reconciled(const View& before, const View& fresh);

}  // namespace orvane
