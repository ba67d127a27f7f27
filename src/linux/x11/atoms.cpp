#include "linux/x11/atoms.h"

#include <string>

#include "linux/xcb/answers.h"

namespace orvane::host::x11 {

namespace {

constexpr std::size_t count = static_cast<std::size_t>(Atom::count);

// In the order of the enumeration.
std::array<std::string, count> namesFor(int screenNumber) {
  const std::string screen = std::to_string(screenNumber);
  return {"UTF8_STRING",
          "EDID",
          "ESETROOT_PMAP_ID",
          "_KDE_NET_WM_BLUR_BEHIND_REGION",
          "_MOTIF_WM_HINTS",
          "_XROOTPMAP_ID",
          "_NET_ACTIVE_WINDOW",
          "_NET_CLIENT_LIST",
          "_NET_CLIENT_LIST_STACKING",
          "_NET_CURRENT_DESKTOP",
          "_NET_RESTACK_WINDOW",
          "_NET_SUPPORTED",
          "_NET_SUPPORTING_WM_CHECK",
          "_NET_WM_DESKTOP",
          "_NET_WM_NAME",
          "_NET_WM_OPAQUE_REGION",
          "_NET_WM_PID",
          "_NET_WM_STATE",
          "_NET_WM_STATE_ABOVE",
          "_NET_WM_STATE_BELOW",
          "_NET_WM_STATE_FULLSCREEN",
          "_NET_WM_STATE_HIDDEN",
          "_NET_WM_STATE_SKIP_PAGER",
          "_NET_WM_STATE_SKIP_TASKBAR",
          "_NET_WM_STATE_STICKY",
          "_NET_WM_WINDOW_OPACITY",
          "_NET_WM_WINDOW_TYPE",
          "_NET_WM_WINDOW_TYPE_DESKTOP",
          "_NET_WM_WINDOW_TYPE_DOCK",
          "_NET_WM_WINDOW_TYPE_NORMAL",
          "_NET_WM_WINDOW_TYPE_SPLASH",
          "_NET_WM_WINDOW_TYPE_UTILITY",
          "_NET_WORKAREA",
          "WM_DELETE_WINDOW",
          "WM_PROTOCOLS",
          "_NET_WM_CM_S" + screen,
          "WM_S" + screen};
}

}  // namespace

Atoms::Atoms(xcb_connection_t* connection, int screenNumber) {
  const auto names = namesFor(screenNumber);
  std::array<xcb_intern_atom_cookie_t, count> asked{};
  for (std::size_t i = 0; i < count; ++i) {
    asked[i] = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(names[i].size()),
                               names[i].c_str());
  }
  for (std::size_t i = 0; i < count; ++i) {
    const auto reply = xcb::answerTo<xcb_intern_atom_reply_t>(connection, asked[i]);
    if (reply) atoms_[i] = reply->atom;
  }
}

}  // namespace orvane::host::x11
