#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/ns_screen.h"

namespace orvane::host::wayland {

// One output as its compositor describes it.
struct OutputDescription {
  std::string connector;  // "DP-1"; empty where the compositor does not tell
  std::string make;
  std::string model;
  Rect frame;     // in the layout of all outputs, in points
  int scale = 1;  // whole; of a fraction, the next higher
  friend bool operator==(const OutputDescription&, const OutputDescription&) = default;
};

// A positive number of 31 bits: the FNV-1a hash of connector, make and model. Nothing for an output
// without a connector, since two monitors of one model would share it.
[[nodiscard]] std::optional<std::int64_t> screenNumber(const OutputDescription& output);

// The layer shell does not tell what panels reserve: the visible frame is the whole one.
[[nodiscard]] NSScreen screenOf(const OutputDescription& output, const std::string& identity);

// The position of the first output of the compositor's own order, where it tells one; else of the
// one whose corner lies nearest to the origin of the layout, of two the one whose connector sorts
// first. Nothing when there is no output.
[[nodiscard]] std::optional<std::size_t> mainOutput(const std::vector<OutputDescription>& outputs,
                                                    const std::vector<std::string>& order = {});

// Whether the output shows nothing that another one does not show too, where all of them show parts
// of one plane; of several with the same frame, one is not redundant: the first of the order, or
// else of the list.
[[nodiscard]] bool isRedundant(std::size_t index, const std::vector<OutputDescription>& outputs,
                               const std::vector<std::string>& order);

}  // namespace orvane::host::wayland
