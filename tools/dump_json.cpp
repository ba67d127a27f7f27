#include "dump_json.h"

#include <nlohmann/json.hpp>
#include <variant>

#include "agenda/records.h"
#include "view/display_list.h"

namespace orvane {
namespace {

using nlohmann::json;

json jsonOf(const Rect& rect) {
  return {{"x", rect.x}, {"y", rect.y}, {"width", rect.width}, {"height", rect.height}};
}

json jsonOf(const Color& color) {
  const SRGB rgb = color.resolved();
  return json::array({rgb.red, rgb.green, rgb.blue, rgb.opacity});
}

json jsonOf(const std::optional<Date>& date) {
  return date ? json(date->secondsSince1970) : json(nullptr);
}

json jsonOf(const DashboardEvent& event) {
  return {{"id", event.id},
          {"title", event.title},
          {"calendarTitle", event.calendarTitle},
          {"calendarIdentifier", event.calendarIdentifier},
          {"startDate", event.startDate.secondsSince1970},
          {"endDate", event.endDate.secondsSince1970},
          {"isAllDay", event.isAllDay}};
}

json jsonOf(const DashboardReminder& reminder) {
  return {{"id", reminder.id},
          {"title", reminder.title},
          {"calendarTitle", reminder.calendarTitle},
          {"calendarIdentifier", reminder.calendarIdentifier},
          {"dueDate", jsonOf(reminder.dueDate)},
          {"priority", reminder.priority}};
}

json jsonOf(const EventKitSourceOption& option) {
  return {{"id", option.id}, {"title", option.title}, {"type", static_cast<int>(option.type)}};
}

json jsonOf(const std::optional<DashboardDeadline>& deadline) {
  if (!deadline) return nullptr;
  return {{"id", deadline->id},
          {"title", deadline->title},
          {"subtitle", deadline->subtitle},
          {"date", deadline->date.secondsSince1970},
          {"source", rawValue(deadline->source)}};
}

// "unknown", "authorized", or {"denied": the sentence that says why}.
json jsonOf(const EventKitAuthorizationState& state) {
  switch (state.kind()) {
    case EventKitAuthorizationState::Kind::denied:
      return json::object({{"denied", state.message()}});
    case EventKitAuthorizationState::Kind::unknown:
      return "unknown";
    case EventKitAuthorizationState::Kind::authorized:
      return "authorized";
  }
  return nullptr;
}

template <class Record>
json listOf(const std::vector<Record>& records) {
  json list = json::array();
  for (const Record& record : records) list.push_back(jsonOf(record));
  return list;
}

const char* nameOf(FontWeight weight) {
  switch (weight) {
    case FontWeight::regular:
      return "regular";
    case FontWeight::semibold:
      return "semibold";
    case FontWeight::bold:
      return "bold";
  }
  return "";
}

json jsonOf(const Shape& shape) {
  switch (shape.kind) {
    case Shape::Kind::rectangle:
      return "rectangle";
    case Shape::Kind::capsule:
      return "capsule";
    case Shape::Kind::circle:
      return "circle";
    case Shape::Kind::roundedRectangle:
      return {{"cornerRadius", shape.cornerRadius}, {"continuous", shape.continuous}};
  }
  return nullptr;
}

// What an item is and looks like, apart from where it is.
struct Contents {
  json operator()(const TextItem& item) const {
    return {{"kind", "text"},
            {"text", item.text},
            {"fontSize", item.style.font.size},
            {"weight", nameOf(item.style.font.weight)},
            {"uppercase", item.style.uppercase},
            {"color", jsonOf(item.color)}};
  }
  json operator()(const SymbolItem& item) const {
    return {{"kind", "symbol"},
            {"symbol", item.name},
            {"fontSize", item.font.size},
            {"weight", nameOf(item.font.weight)},
            {"color", jsonOf(item.color)}};
  }
  json operator()(const FillItem& item) const {
    json result = std::visit(Contents{}, item.fill);
    result["shape"] = jsonOf(item.shape);
    return result;
  }
  json operator()(const Color& color) const { return {{"kind", "fill"}, {"color", jsonOf(color)}}; }
  json operator()(const Material& material) const {
    return {{"kind", "material"}, {"color", jsonOf(material.tint)}};
  }
  json operator()(const LinearGradient& gradient) const {
    json stops = json::array();
    for (const Color& stop : gradient.stops) stops.push_back(jsonOf(stop));
    return {{"kind", "gradient"}, {"stops", stops}};
  }
  json operator()(const StrokeItem& item) const {
    return {{"kind", "stroke"},
            {"shape", jsonOf(item.shape)},
            {"lineWidth", item.lineWidth},
            {"color", jsonOf(item.color)}};
  }
  json operator()(const ShadowItem& item) const {
    return {{"kind", "shadow"},
            {"shape", jsonOf(item.shape)},
            {"color", jsonOf(item.color)},
            {"radius", item.radius},
            {"offset", {{"x", item.offset.x}, {"y", item.offset.y}}}};
  }
  json operator()(const GroupBegin& group) const {
    return {{"kind", "group"},
            {"groupOpacity", group.groupOpacity},
            {"clip", group.clip ? jsonOf(*group.clip) : json(nullptr)}};
  }
  // The items say themselves how opaque the groups around them are.
  json operator()(const GroupEnd&) const { return nullptr; }
};

json displayOf(const DisplayList& list) {
  json display = json::array();
  for (const DisplayItem& item : list) {
    json entry = std::visit(Contents{}, item.content);
    if (entry.is_null()) continue;
    entry["frame"] = jsonOf(item.frame);
    entry["opacity"] = item.opacity;
    display.push_back(std::move(entry));
  }
  return display;
}

json framesOf(const std::vector<NamedFrame>& frames) {
  json result = json::object();
  for (const NamedFrame& named : frames) result[named.name] = jsonOf(named.frame);
  return result;
}

}  // namespace

json dumpOf(Date now, const TaskManager& agenda, const Layout& layout) {
  return {{"now", now.secondsSince1970},
          {"events", listOf(agenda.events.get())},
          {"reminders", listOf(agenda.reminders.get())},
          {"calendarOptions", listOf(agenda.calendarOptions.get())},
          {"reminderListOptions", listOf(agenda.reminderListOptions.get())},
          {"nextDeadline", jsonOf(agenda.nextDeadline.get())},
          {"calendarAuthorizationState", jsonOf(agenda.calendarAuthorizationState.get())},
          {"reminderAuthorizationState", jsonOf(agenda.reminderAuthorizationState.get())},
          {"frames", framesOf(layout.frames)},
          {"display", displayOf(layout.list)}};
}

std::string dumpText(Date now, const TaskManager& agenda, const Layout& layout) {
  return dumpOf(now, agenda, layout).dump(2, ' ', false, json::error_handler_t::replace) + "\n";
}

}  // namespace orvane
