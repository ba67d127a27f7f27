#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>
#include <set>
#include <vector>

#include "linux/hotkey/hot_key_source.h"

namespace orvane::host::hotkey {

// The places of a keyboard and what is written on them, as an X server has it at one time.
class KeyMap {
 public:
  struct Tables {
    xcb_keycode_t firstKey = 8;
    std::size_t symbolsPerKey = 0;
    std::vector<xcb_keysym_t> symbols;        // those of one key after those of another
    std::vector<xcb_keycode_t> modifierKeys;  // as many for each of the eight modifiers
  };
  explicit KeyMap(Tables tables) : tables_(std::move(tables)) {}

  // Nothing where the server does not answer, and is lost thereby.
  [[nodiscard]] static std::optional<KeyMap> read(xcb_connection_t* connection);

  // The keys that give the symbol, in any layout and with any modifiers.
  [[nodiscard]] std::vector<xcb_keycode_t> keysOf(xcb_keysym_t symbol) const;
  // The keys of a letter. On a layout that has no such letter, the place of Z on an ANSI keyboard.
  [[nodiscard]] std::vector<xcb_keycode_t> keysOfLetter(xcb_keysym_t letter) const;
  // The modifier that a key such as NumLock sets; 0 where none does.
  [[nodiscard]] std::uint16_t modifierOf(xcb_keysym_t symbol) const;

 private:
  Tables tables_;
};

// The states of modifiers in which a combination counts: with every mix of Lock, NumLock and
// ScrollLock.
[[nodiscard]] std::set<std::uint16_t> modifierMixes(Combination combination, const KeyMap& keys);

}  // namespace orvane::host::hotkey
