#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "agenda/task_manager.h"
#include "foundation/date.h"
#include "view/layout.h"

namespace orvane {

// All that a picture shows, as one object: the agenda as published, the frames of the named views
// and every item that is drawn, in drawing order. Dates are seconds since 1970, lengths points,
// colours [red, green, blue, opacity] in sRGB; what is absent is null.
[[nodiscard]] nlohmann::json dumpOf(Date now, const TaskManager& agenda, const Layout& layout);

// The same as text, indented; ill-formed bytes come out as U+FFFD.
[[nodiscard]] std::string dumpText(Date now, const TaskManager& agenda, const Layout& layout);

}  // namespace orvane
