#include "linux/hotkey/key_names.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/event_hot_keys.h"

namespace orvane::host::hotkey {
namespace {

// The letters' places on an ANSI keyboard. A letter's keysym is its code in ASCII.
constexpr std::array<std::pair<std::uint32_t, char>, 26> kLetters = {
    {{0x00, 'a'}, {0x0B, 'b'}, {0x08, 'c'}, {0x02, 'd'}, {0x0E, 'e'}, {0x03, 'f'}, {0x05, 'g'},
     {0x04, 'h'}, {0x22, 'i'}, {0x26, 'j'}, {0x28, 'k'}, {0x25, 'l'}, {0x2E, 'm'}, {0x2D, 'n'},
     {0x1F, 'o'}, {0x23, 'p'}, {0x0C, 'q'}, {0x0F, 'r'}, {0x01, 's'}, {0x11, 't'}, {0x20, 'u'},
     {0x09, 'v'}, {0x0D, 'w'}, {0x07, 'x'}, {0x10, 'y'}, {0x06, 'z'}}};

std::optional<char> letterOf(std::uint32_t keyCode) {
  const auto* found = std::find_if(kLetters.begin(), kLetters.end(),
                                   [&](const auto& letter) { return letter.first == keyCode; });
  return found == kLetters.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace

std::optional<std::uint32_t> keysymOf(std::uint32_t keyCode) {
  const auto letter = letterOf(keyCode);
  return letter ? std::optional(static_cast<std::uint32_t>(*letter)) : std::nullopt;
}

std::optional<std::string> shortcutTrigger(Combination combination) {
  const auto letter = letterOf(combination.keyCode);
  if (!letter) return std::nullopt;
  std::string trigger;
  if ((combination.modifiers & cmdKey) != 0) trigger += "LOGO+";
  if ((combination.modifiers & shiftKey) != 0) trigger += "SHIFT+";
  return trigger + *letter;
}

}  // namespace orvane::host::hotkey
