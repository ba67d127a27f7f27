#include "linux/hotkey/x11_keys.h"

#include <gtest/gtest.h>

#include "platform/event_hot_keys.h"

namespace orvane::host::hotkey {
namespace {

using Codes = std::vector<xcb_keycode_t>;

constexpr xcb_keysym_t kNone = 0;
constexpr xcb_keysym_t kNumLock = 0xFF7F;
constexpr xcb_keysym_t kCyrillicYa = 0x6D1;
constexpr Combination kSuperShiftZ{0x06, cmdKey | shiftKey};
constexpr std::uint16_t kSuperAndShift = XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT;

KeyMap keys(std::size_t width, std::vector<xcb_keysym_t> symbols, Codes modifiers = {}) {
  return KeyMap({8, width, std::move(symbols), std::move(modifiers)});
}

TEST(KeyMapTest, FindsASymbolInEveryColumn) {
  const auto map = keys(4, {'y', 'Y', kNone, kNone,        //
                            'w', 'W', 'z', 'Z',            //
                            kCyrillicYa, kNone, 'x', 'X',  //
                            'z', 'Z', kNone, kNone});
  EXPECT_EQ(map.keysOf('z'), (Codes{9, 11}));
  EXPECT_EQ(map.keysOf('x'), Codes{10});
  EXPECT_EQ(map.keysOf('q'), Codes());
}

TEST(KeyMapTest, ACapitalAloneIsItsSmallLetterToo) {
  EXPECT_EQ(keys(2, {'Z', kNone, 'Z', 'X'}).keysOf('z'), Codes{8});
  EXPECT_EQ(keys(1, {'Z', 'z'}).keysOf('z'), (Codes{8, 9}));
  EXPECT_EQ(keys(4, {'w', 'W', 'Z', kNone}).keysOf('z'), Codes{8});
}

TEST(KeyMapTest, ALetterThatIsNowhereHasItsPlace) {
  EXPECT_EQ(keys(1, {kCyrillicYa}).keysOfLetter('z'), Codes{52});
  EXPECT_EQ(keys(1, {kCyrillicYa}).keysOfLetter('q'), Codes());
  EXPECT_EQ(keys(1, {'z'}).keysOfLetter('z'), Codes{8});
}

TEST(KeyMapTest, OddTablesAreSurvived) {
  EXPECT_EQ(keys(0, {}).keysOf('z'), Codes());
  EXPECT_EQ(keys(0, {'z'}).keysOf('z'), Codes());
  EXPECT_EQ(keys(3, {'z', 'Z'}).keysOf('z'), Codes());
  EXPECT_EQ(keys(1, {kNumLock}, {8, 8, 8}).modifierOf(kNumLock), 0);
}

TEST(KeyMapTest, TellsTheModifierOfAKey) {
  const Codes two = {1, 0, 2, 0, 3, 0, 4, 0, 5, 0, 0, 9, 6, 0, 7, 0};
  EXPECT_EQ(keys(1, {'a', kNumLock}, two).modifierOf(kNumLock), XCB_MOD_MASK_3);
  EXPECT_EQ(keys(1, {'a', kNumLock}).modifierOf(kNumLock), 0);
  EXPECT_EQ(keys(1, {'a'}, two).modifierOf(kNumLock), 0);
}

TEST(ModifierMixesTest, AreAllOfTheLocksEachOnce) {
  const std::uint16_t lock = XCB_MOD_MASK_LOCK;
  const std::uint16_t num = XCB_MOD_MASK_2;
  const auto mix = [](unsigned more) { return static_cast<std::uint16_t>(kSuperAndShift | more); };
  const Codes numLock = {0, 0, 0, 0, 9, 0, 0, 0};
  EXPECT_EQ(modifierMixes(kSuperShiftZ, keys(1, {'a', kNumLock}, numLock)),
            (std::set<std::uint16_t>{mix(0), mix(lock), mix(num), mix(lock | num)}));
  EXPECT_EQ(modifierMixes(kSuperShiftZ, keys(1, {'a'})),
            (std::set<std::uint16_t>{mix(0), mix(lock)}));
  EXPECT_EQ(modifierMixes({0x06, 0}, keys(1, {'a'})), (std::set<std::uint16_t>{0, lock}));
}

}  // namespace
}  // namespace orvane::host::hotkey
