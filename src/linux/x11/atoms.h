#pragma once

#include <array>
#include <cstddef>

#include "linux/x11/xcb_types.h"

namespace orvane::host::x11 {

// The names that we exchange with the server and its other clients. Those that begin with `net`
// stand in the Extended Window Manager Hints, those with `wm` in the ICCCM; `kde` is KWin's own.
enum class Atom : std::size_t {
  utf8String,
  edid,
  esetrootPixmap,
  kdeBlurBehindRegion,
  motifWmHints,
  rootPixmap,
  netActiveWindow,
  netClientList,
  netClientListStacking,
  netCurrentDesktop,
  netRestackWindow,
  netSupported,
  netSupportingWmCheck,
  netWmDesktop,
  netWmName,
  netWmOpaqueRegion,
  netWmPid,
  netWmState,
  netWmStateAbove,
  netWmStateBelow,
  netWmStateFullscreen,
  netWmStateHidden,
  netWmStateSkipPager,
  netWmStateSkipTaskbar,
  netWmStateSticky,
  netWmWindowOpacity,
  netWmWindowType,
  netWmWindowTypeDesktop,
  netWmWindowTypeDock,
  netWmWindowTypeNormal,
  netWmWindowTypeSplash,
  netWmWindowTypeUtility,
  netWorkarea,
  wmDeleteWindow,
  wmProtocols,
  // Selections of which each screen has its own.
  compositingManager,  // _NET_WM_CM_Sn
  windowManager,       // WM_Sn
  count,
};

class Atoms {
 public:
  Atoms() = default;
  // Asks for all of them in one round trip. An atom that could not be had is XCB_ATOM_NONE.
  Atoms(xcb_connection_t* connection, int screenNumber);

  xcb_atom_t operator[](Atom atom) const { return atoms_[static_cast<std::size_t>(atom)]; }

 private:
  std::array<xcb_atom_t, static_cast<std::size_t>(Atom::count)> atoms_{};
};

}  // namespace orvane::host::x11
