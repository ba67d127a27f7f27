#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane::ical {

enum class ComponentKind { event, task, timeZone };

// Where one component stands in the text, from its BEGIN line to its END line.
struct ComponentSpan {
  ComponentKind kind = ComponentKind::event;
  std::size_t begin = 0;
  std::size_t end = 0;
  int calendar = 0;  // which VCALENDAR of the text it belongs to
};

struct SplitText {
  std::vector<ComponentSpan> components;  // only whole ones, in the order of the text
  std::optional<std::string> calendarName;
  bool isCalendar = false;  // a VCALENDAR or one of the components was there, whole or not
  bool holdsEvents = false;
  bool holdsTasks = false;
};

// Cuts the text of a file into its components without understanding them, so that each can be read
// alone and a bad one costs no other. A component that is not closed before another of its kind of
// level begins, its calendar ends or the text ends is left out.
SplitText splitIntoComponents(std::string_view text);

}  // namespace orvane::ical
