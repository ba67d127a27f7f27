#pragma once

#include <cstdint>
#include <string>

namespace orvane::host::wayland {

// What the globals of a compositor tell of KWin, which does some things in its own way.
class KWinSigns {
 public:
  void announced(const std::string& interface, std::uint32_t version) {
    if (interface == "org_kde_plasma_shell") isKWin_ = true;
    if (interface == "kde_output_management_v2") outputManagement_ = version;
  }

  // All outputs show parts of one plane: a surface that stands where two of them overlap is seen on
  // both.
  [[nodiscard]] bool showsOnePlane() const { return isKWin_; }
  // The layer alone decides what a surface stands above, whatever kind of window its name stands
  // for. Before Plasma 6.3 (as its interface for outputs tells) a surface of another kind than an
  // ordinary window stands where windows of its kind do.
  [[nodiscard]] bool stacksByLayerAlone() const {
    constexpr std::uint32_t plasma63 = 13;
    return isKWin_ && outputManagement_ >= plasma63;
  }

 private:
  bool isKWin_ = false;
  std::uint32_t outputManagement_ = 0;
};

// The name by which the compositor knows the surfaces of the board. Users write rules with it, so
// it is the same everywhere but where KWin takes "desktop" for a part of the desktop, which stays
// while the desktop is being shown, and stacks it above the desktop's picture nevertheless.
inline std::string surfaceName(const KWinSigns& signs) {
  return signs.stacksByLayerAlone() ? "desktop" : "org.orvane.Orvane";
}

}  // namespace orvane::host::wayland
