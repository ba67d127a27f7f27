#include "linux/calendars/calendar_roots.h"

namespace orvane::host {
namespace {

std::optional<std::string> absolutePath(const Environment& environment, const std::string& name) {
  auto value = environment(name);
  if (!value || value->empty() || value->front() != '/') return std::nullopt;
  while (value->size() > 1 && value->back() == '/') value->pop_back();
  return value;
}

}  // namespace

std::vector<std::string> calendarRoots(const Environment& environment) {
  const auto home = absolutePath(environment, "HOME");
  auto share = absolutePath(environment, "XDG_DATA_HOME");
  if (!share && home) share = *home + "/.local/share";

  std::vector<std::string> roots;
  if (share) roots.push_back(*share + "/orvane/calendars");
  if (home) roots.push_back(*home + "/.calendars");
  if (share) {
    for (const char* tool : {"/calendars", "/khal/calendars", "/vdirsyncer/calendars"}) {
      roots.push_back(*share + tool);
    }
  }
  return roots;
}

}  // namespace orvane::host
