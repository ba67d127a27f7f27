#include "linux/hotkey/key_names.h"

#include <gtest/gtest.h>

#include <set>

#include "platform/event_hot_keys.h"

namespace orvane::host::hotkey {
namespace {

struct Row {
  Combination combination;
  std::optional<std::uint32_t> keysym;
  std::optional<std::string> trigger;
};

const std::vector<Row> rows = {
    {{0x06, cmdKey | shiftKey}, 'z', "LOGO+SHIFT+z"},
    {{0x06, cmdKey}, 'z', "LOGO+z"},
    {{0x06, shiftKey}, 'z', "SHIFT+z"},
    {{0x06, 0}, 'z', "z"},
    {{0x00, cmdKey}, 'a', "LOGO+a"},
    {{0x2E, 0}, 'm', "m"},
    {{0x10, shiftKey}, 'y', "SHIFT+y"},
    // Return, a key of the number pad, and no key at all.
    {{0x24, cmdKey}, std::nullopt, std::nullopt},
    {{0x52, cmdKey}, std::nullopt, std::nullopt},
    {{0xFFFF, cmdKey}, std::nullopt, std::nullopt},
};

TEST(KeyNames, AreTheLetterAndTheModifiersBeforeIt) {
  for (const auto& row : rows) {
    EXPECT_EQ(keysymOf(row.combination.keyCode), row.keysym) << row.combination.keyCode;
    EXPECT_EQ(shortcutTrigger(row.combination), row.trigger) << row.combination.keyCode;
  }
}

TEST(KeyNames, ReachEveryLetterOnce) {
  std::multiset<std::uint32_t> letters;
  for (std::uint32_t code = 0; code < 0x80; ++code) {
    if (const auto keysym = keysymOf(code)) letters.insert(*keysym);
  }
  std::multiset<std::uint32_t> alphabet;
  for (std::uint32_t letter = 'a'; letter <= 'z'; ++letter) alphabet.insert(letter);
  EXPECT_EQ(letters, alphabet);
}

}  // namespace
}  // namespace orvane::host::hotkey
