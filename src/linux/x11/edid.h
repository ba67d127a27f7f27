#pragma once

#include <string>
#include <string_view>

namespace orvane::host::x11 {

// Who made a monitor and what it is called, as its EDID block tells (VESA E-EDID 1.4, §3).
struct MonitorModel {
  std::string make;   // the three letters of the manufacturer; empty when there is no valid block
  std::string model;  // the display product name, or else the product code as "0x1A2B"
  friend bool operator==(const MonitorModel&, const MonitorModel&) = default;
};

// Takes any bytes; what is no EDID block yields empty names.
MonitorModel modelFromEdid(std::string_view block);

}  // namespace orvane::host::x11
