#pragma once

#include <limits>
#include <vector>

#include "../example_form.h"
#include "linux/settingswindow/wire/messages.h"

namespace orvane::formwire {

inline WindowState exampleState() {
  return {Point{-1280, 32}, {{"sources", 120}, {"list \"a\"", 0.25}}};
}

inline Preview examplePreview() {
  return {9, "preview", 3, 2, 1.5, std::string("\0\x01\xff\x80 pixels of 24 bytes.", 24)};
}

// At least one of each kind, with the optional parts there and absent.
inline std::vector<BoardMessage> exampleBoardMessages() {
  return {Show{1,
               0,
               "Settings",
               {true, false, true, true},
               exampleState(),
               "token",
               fakes::exampleForm(),
               true},
          Show{}, Update{2, 7, fakes::exampleForm()},
          Update{std::numeric_limits<std::uint64_t>::max(), 8, std::nullopt}, examplePreview()};
}

inline std::vector<WindowMessage> exampleWindowMessages() {
  return {Edited{1, {"done", std::monostate{}}},
          Edited{2, {"toggle", true}},
          Edited{3, {"slider", 0.1 + 0.2}},
          Edited{4, {"text", std::string("lunch, \u05d0 \"x\"\t\0", 14)}},
          Edited{5, {"color", Color::srgb(1, 1.0 / 3, 0, 1)}},
          Closed{},
          State{exampleState()},
          State{},
          PreviewScale{1.25},
          PreviewScale{0},
          Ack{3}};
}

}  // namespace orvane::formwire
