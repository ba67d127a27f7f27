#include "linux/desktopicons/desktop_kind.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

namespace orvane::host::desktopicons {
namespace {

// Budgie calls itself "Budgie:GNOME", and its icons are its own, so order counts in the list of the
// session and not in this one.
constexpr std::array<std::pair<std::string_view, DesktopKind>, 7> kNames = {
    {{"XFCE", DesktopKind::xfce},
     {"GNOME", DesktopKind::gnome},
     {"X-CINNAMON", DesktopKind::cinnamon},
     {"CINNAMON", DesktopKind::cinnamon},
     {"MATE", DesktopKind::mate},
     {"BUDGIE", DesktopKind::budgie},
     {"KDE", DesktopKind::plasma}}};

bool equalButForCase(std::string_view name, std::string_view upperCase) {
  return std::equal(
      name.begin(), name.end(), upperCase.begin(), upperCase.end(),
      [](char a, char b) { return std::toupper(static_cast<unsigned char>(a)) == b; });
}

}  // namespace

DesktopKind desktopKind(std::string_view currentDesktop) {
  while (!currentDesktop.empty()) {
    const auto end = std::min(currentDesktop.find(':'), currentDesktop.size());
    const auto name = currentDesktop.substr(0, end);
    const auto* found = std::find_if(kNames.begin(), kNames.end(), [&](const auto& each) {
      return equalButForCase(name, each.first);
    });
    if (found != kNames.end()) return found->second;
    currentDesktop.remove_prefix(std::min(end + 1, currentDesktop.size()));
  }
  return DesktopKind::none;
}

}  // namespace orvane::host::desktopicons
