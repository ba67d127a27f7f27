#include "linux/x11/properties.h"

#include "linux/xcb/answers.h"

namespace orvane::host::x11 {

namespace {

Reply<xcb_get_property_reply_t> read(const Connection& connection, xcb_window_t window,
                                     xcb_atom_t name) {
  constexpr std::uint32_t longs = 256 * 1024 / 4;
  const auto asked =
      xcb_get_property(connection.handle(), 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, longs);
  return xcb::answerTo<xcb_get_property_reply_t>(connection.handle(), asked);
}

}  // namespace

std::optional<std::string> bytesProperty(const Connection& connection, xcb_window_t window,
                                         xcb_atom_t name) {
  const auto reply = read(connection, window, name);
  if (!reply || reply->format != 8) return std::nullopt;
  const auto* bytes = static_cast<const char*>(xcb_get_property_value(reply.get()));
  return std::string(bytes, static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
}

std::vector<std::uint32_t> numbersProperty(const Connection& connection, xcb_window_t window,
                                           xcb_atom_t name) {
  const auto reply = read(connection, window, name);
  if (!reply || reply->format != 32) return {};
  const auto* values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {values, values + xcb_get_property_value_length(reply.get()) / 4};
}

std::optional<std::uint32_t> numberProperty(const Connection& connection, xcb_window_t window,
                                            xcb_atom_t name) {
  const auto values = numbersProperty(connection, window, name);
  if (values.empty()) return std::nullopt;
  return values.front();
}

void setNumbers(const Connection& connection, xcb_window_t window, xcb_atom_t name, xcb_atom_t type,
                const std::vector<std::uint32_t>& values) {
  xcb_change_property(connection.handle(), XCB_PROP_MODE_REPLACE, window, name, type, 32,
                      static_cast<std::uint32_t>(values.size()), values.data());
}

void setBytes(const Connection& connection, xcb_window_t window, xcb_atom_t name, xcb_atom_t type,
              const std::string& bytes) {
  xcb_change_property(connection.handle(), XCB_PROP_MODE_REPLACE, window, name, type, 8,
                      static_cast<std::uint32_t>(bytes.size()), bytes.data());
}

}  // namespace orvane::host::x11
