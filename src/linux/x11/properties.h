#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "linux/x11/connection.h"

namespace orvane::host::x11 {

// Properties of any window, also one that vanished meanwhile. Each waits for the server's answer,
// takes any type of the right width, and reads at most 256 kB.

// Texts or bytes; nothing when there is no such property.
std::optional<std::string> bytesProperty(const Connection& connection, xcb_window_t window,
                                         xcb_atom_t name);
// Windows, atoms or cardinals; empty when there is no such property.
std::vector<std::uint32_t> numbersProperty(const Connection& connection, xcb_window_t window,
                                           xcb_atom_t name);
// The first of them; nothing when there is none.
std::optional<std::uint32_t> numberProperty(const Connection& connection, xcb_window_t window,
                                            xcb_atom_t name);

void setNumbers(const Connection& connection, xcb_window_t window, xcb_atom_t name, xcb_atom_t type,
                const std::vector<std::uint32_t>& values);
void setBytes(const Connection& connection, xcb_window_t window, xcb_atom_t name, xcb_atom_t type,
              const std::string& bytes);

}  // namespace orvane::host::x11
