#include "linux/evolution/component_text.h"

#include <set>

#include "linux/gio/handles.h"

namespace orvane::host {
namespace {

// Real calendars name a handful. Each is a question to the service.
constexpr std::size_t mostZones = 200;

void append(std::string& text, ICalComponent* component) {
  const gio::TextPtr piece(i_cal_component_as_ical_string(component));
  if (piece) text += piece.get();
}

using Names = std::set<std::string>;

void noteZone(ICalParameter* parameter, gpointer data) {
  const char* name = i_cal_parameter_get_tzid(parameter);
  auto& names = *static_cast<Names*>(data);
  if (name != nullptr && *name != '\0' && names.size() < mostZones) names.insert(name);
}

// The library passes over the zone of RECURRENCE-ID.
void noteZones(ICalComponent* component, Names& names) {
  i_cal_component_foreach_tzid(component, &noteZone, &names);
  const gio::ObjectPtr<ICalProperty> property(
      i_cal_component_get_first_property(component, I_CAL_RECURRENCEID_PROPERTY));
  if (!property) return;
  const gio::ObjectPtr<ICalParameter> parameter(
      i_cal_property_get_first_parameter(property.get(), I_CAL_TZID_PARAMETER));
  if (parameter) noteZone(parameter.get(), &names);
}

// Those are read from the system's own database, whatever the calendar says of them: the library
// here would do the same with tables that may be older.
bool isKnown(const std::string& name) {
  return name == "UTC" || i_cal_timezone_get_builtin_timezone(name.c_str()) != nullptr;
}

void appendZone(std::string& text, ECalClient* client, const std::string& name,
                GCancellable* cancellable) {
  ICalTimezone* zone = nullptr;  // the client's own
  gio::Failure unknown;
  if (!e_cal_client_get_timezone_sync(client, name.c_str(), &zone, cancellable, unknown.out()) ||
      zone == nullptr) {
    return;
  }
  const gio::ObjectPtr<ICalComponent> component(i_cal_timezone_get_component(zone));
  if (component) append(text, component.get());
}

}  // namespace

std::string calendarText(ECalClient* client, const GSList* components, GCancellable* cancellable) {
  Names zones;
  for (const auto* item = components; item != nullptr; item = item->next) {
    noteZones(static_cast<ICalComponent*>(item->data), zones);
  }
  std::string text = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n";
  for (const auto& zone : zones) {
    if (!isKnown(zone)) appendZone(text, client, zone, cancellable);
  }
  for (const auto* item = components; item != nullptr; item = item->next) {
    append(text, static_cast<ICalComponent*>(item->data));
  }
  return text += "END:VCALENDAR\r\n";
}

}  // namespace orvane::host
