#include "linux/x11/monitors.h"

#include <xcb/randr.h>

#include <algorithm>
#include <utility>

#include "linux/xcb/answers.h"
#include "platform/screen_number.h"

namespace orvane::host::x11 {

namespace {

Rect inPoints(const PixelRect& pixels, double scale) {
  return {pixels.x / scale, pixels.y / scale, pixels.width / scale, pixels.height / scale};
}

std::string nameOf(const Connection& connection, xcb_atom_t atom) {
  const auto reply = xcb::answerTo<xcb_get_atom_name_reply_t>(
      connection.handle(), xcb_get_atom_name(connection.handle(), atom));
  if (!reply) return {};
  return {xcb_get_atom_name_name(reply.get()),
          static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()))};
}

MonitorModel modelOf(const Connection& connection, xcb_randr_output_t output) {
  constexpr std::uint32_t longs = 64;  // two blocks, of which the first has the names
  const auto asked =
      xcb_randr_get_output_property(connection.handle(), output, connection.atom(Atom::edid),
                                    XCB_GET_PROPERTY_TYPE_ANY, 0, longs, 0, 0);
  const auto reply =
      xcb::answerTo<xcb_randr_get_output_property_reply_t>(connection.handle(), asked);
  if (!reply || reply->format != 8) return {};
  const auto* bytes = xcb_randr_get_output_property_data(reply.get());
  return modelFromEdid(
      {reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(reply->num_items)});
}

Monitor monitorOf(const Connection& connection, const xcb_randr_monitor_info_t& info) {
  Monitor monitor{nameOf(connection, info.name),
                  {},
                  {info.x, info.y, info.width, info.height},
                  info.primary != 0};
  if (xcb_randr_monitor_info_outputs_length(&info) > 0) {
    monitor.model = modelOf(connection, *xcb_randr_monitor_info_outputs(&info));
  }
  return monitor;
}

bool contains(const PixelRect& outer, const PixelRect& inner) {
  return intersectionOf(outer, inner) == inner;
}

// Whether another one shows all of it; of several that show the same, the first is none.
bool isMirror(std::size_t index, const std::vector<Monitor>& all) {
  for (std::size_t other = 0; other < all.size(); ++other) {
    if (!contains(all[other].frame, all[index].frame)) continue;
    if (all[other].frame != all[index].frame || other < index) return true;
  }
  return false;
}

}  // namespace

std::vector<Monitor> withoutMirrors(const std::vector<Monitor>& all) {
  std::vector<Monitor> kept;
  for (std::size_t index = 0; index < all.size(); ++index) {
    if (!isMirror(index, all)) kept.push_back(all[index]);
  }
  for (const auto& primary : all) {
    if (!primary.isPrimary) continue;
    const auto showing = std::find_if(kept.begin(), kept.end(), [&](const Monitor& monitor) {
      return contains(monitor.frame, primary.frame);
    });
    if (showing != kept.end()) showing->isPrimary = true;
  }
  return kept;
}

std::vector<Monitor> queryMonitors(const Connection& connection) {
  if (!connection.hasMonitors()) return {Monitor{{}, {}, connection.rootFrame(), true}};
  const auto reply = xcb::answerTo<xcb_randr_get_monitors_reply_t>(
      connection.handle(), xcb_randr_get_monitors(connection.handle(), connection.root(), 1));
  if (!reply) return {};
  std::vector<Monitor> monitors;
  auto infos = xcb_randr_get_monitors_monitors_iterator(reply.get());
  for (; infos.rem > 0; xcb_randr_monitor_info_next(&infos)) {
    auto monitor = monitorOf(connection, *infos.data);
    if (!monitor.frame.isEmpty()) monitors.push_back(std::move(monitor));
  }
  return withoutMirrors(monitors);
}

std::optional<std::int64_t> screenNumber(const Monitor& monitor) {
  return screenNumberOf(monitor.connector, monitor.model.make, monitor.model.model);
}

std::optional<std::size_t> mainMonitor(const std::vector<Monitor>& monitors) {
  if (monitors.empty()) return std::nullopt;
  const auto rank = [](const Monitor& monitor) {
    const double x = monitor.frame.x;
    const double y = monitor.frame.y;
    return std::tuple(!monitor.isPrimary, x * x + y * y, monitor.connector);
  };
  const auto first =
      std::min_element(monitors.begin(), monitors.end(),
                       [&](const auto& a, const auto& b) { return rank(a) < rank(b); });
  return static_cast<std::size_t>(first - monitors.begin());
}

NSScreen screenOf(const Monitor& monitor, double scale, const std::optional<PixelRect>& workArea) {
  const auto whole = inPoints(monitor.frame, scale);
  const auto free = workArea ? intersectionOf(monitor.frame, *workArea) : PixelRect{};
  return {whole, free.isEmpty() ? whole : inPoints(free, scale), screenNumber(monitor),
          monitor.connector};
}

}  // namespace orvane::host::x11
