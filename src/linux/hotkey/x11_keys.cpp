#include "linux/hotkey/x11_keys.h"

#include <algorithm>
#include <utility>

#include "linux/xcb/answers.h"
#include "platform/event_hot_keys.h"

namespace orvane::host::hotkey {
namespace {

constexpr xcb_keysym_t kNumLock = 0xFF7F;
constexpr xcb_keysym_t kScrollLock = 0xFF14;
// The Z of an ANSI keyboard as the kernel's and all of today's X servers' numbering has it.
constexpr xcb_keycode_t kAnsiZ = 52;
constexpr std::size_t kModifiers = 8;

bool isCapital(xcb_keysym_t symbol) { return symbol >= 'A' && symbol <= 'Z'; }

unsigned maskOf(Combination combination) {
  unsigned mask = 0;
  if ((combination.modifiers & cmdKey) != 0) mask |= XCB_MOD_MASK_4;  // Super
  if ((combination.modifiers & shiftKey) != 0) mask |= XCB_MOD_MASK_SHIFT;
  return mask;
}

}  // namespace

std::optional<KeyMap> KeyMap::read(xcb_connection_t* connection) {
  const auto* setup = xcb_get_setup(connection);
  if (setup == nullptr) return std::nullopt;
  const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
  const auto asked = xcb_get_keyboard_mapping(connection, setup->min_keycode, count);
  const auto askedModifiers = xcb_get_modifier_mapping(connection);
  const auto map = xcb::answerTo<xcb_get_keyboard_mapping_reply_t>(connection, asked);
  const auto modifiers =
      xcb::answerTo<xcb_get_modifier_mapping_reply_t>(connection, askedModifiers);
  if (!map || !modifiers) return std::nullopt;
  const auto* symbols = xcb_get_keyboard_mapping_keysyms(map.get());
  const auto* keys = xcb_get_modifier_mapping_keycodes(modifiers.get());
  return KeyMap({setup->min_keycode,
                 map->keysyms_per_keycode,
                 {symbols, symbols + xcb_get_keyboard_mapping_keysyms_length(map.get())},
                 {keys, keys + xcb_get_modifier_mapping_keycodes_length(modifiers.get())}});
}

// A key with nothing but a capital stands for the small letter, too (Xlib, "Keyboard Encoding").
std::vector<xcb_keycode_t> KeyMap::keysOf(xcb_keysym_t symbol) const {
  std::vector<xcb_keycode_t> keys;
  const std::size_t width = tables_.symbolsPerKey;
  for (std::size_t first = 0; width > 0 && first + width <= tables_.symbols.size();
       first += width) {
    const auto gives = [&](std::size_t column) {
      const auto written = tables_.symbols[first + column];
      if (written == symbol) return true;
      const bool isAlone = column + 1 == width || tables_.symbols[first + column + 1] == 0;
      return column % 2 == 0 && isAlone && isCapital(written) && written + ('a' - 'A') == symbol;
    };
    bool found = false;
    for (std::size_t column = 0; column < width; ++column) found = found || gives(column);
    if (found) keys.push_back(static_cast<xcb_keycode_t>(tables_.firstKey + first / width));
  }
  return keys;
}

std::vector<xcb_keycode_t> KeyMap::keysOfLetter(xcb_keysym_t letter) const {
  auto keys = keysOf(letter);
  if (keys.empty() && letter == 'z') keys.push_back(kAnsiZ);
  return keys;
}

std::uint16_t KeyMap::modifierOf(xcb_keysym_t symbol) const {
  const auto keys = keysOf(symbol);
  const auto& all = tables_.modifierKeys;
  const std::size_t slots = all.size() / kModifiers;
  for (std::size_t index = 0; index < slots * kModifiers; ++index) {
    if (std::find(keys.begin(), keys.end(), all[index]) != keys.end()) {
      return static_cast<std::uint16_t>(1U << (index / slots));
    }
  }
  return 0;
}

std::set<std::uint16_t> modifierMixes(Combination combination, const KeyMap& keys) {
  std::set<std::uint16_t> mixes = {static_cast<std::uint16_t>(maskOf(combination))};
  for (const unsigned lock : {unsigned{XCB_MOD_MASK_LOCK}, unsigned{keys.modifierOf(kNumLock)},
                              unsigned{keys.modifierOf(kScrollLock)}}) {
    const auto before = mixes;
    for (const auto mix : before) mixes.insert(static_cast<std::uint16_t>(mix | lock));
  }
  return mixes;
}

}  // namespace orvane::host::hotkey
