#include "linux/calendars/calendar_roots.h"

namespace orvane::host {
namespace {

// Without the slash that a user may have written after it, so that paths can be compared as texts.
std::string spelled(const std::filesystem::path& folder) {
  std::string text = folder;
  while (text.size() > 1 && text.back() == '/') text.pop_back();
  return text;
}

}  // namespace

std::vector<std::string> calendarRoots(const Environment& environment) {
  const auto home = absolutePath(environment, "HOME");
  const auto share = baseDirectory(environment, "XDG_DATA_HOME", ".local/share");

  std::vector<std::string> roots;
  if (share) roots.push_back(spelled(*share) + "/orvane/calendars");
  if (home) roots.push_back(spelled(*home) + "/.calendars");
  if (share) {
    for (const char* tool : {"/calendars", "/khal/calendars", "/vdirsyncer/calendars"}) {
      roots.push_back(spelled(*share) + tool);
    }
  }
  return roots;
}

}  // namespace orvane::host
