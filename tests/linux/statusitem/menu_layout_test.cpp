#include "linux/statusitem/menu_layout.h"

#include <gtest/gtest.h>

namespace orvane::host::statusitem {
namespace {

NSMenu threeItems() {
  NSMenu menu;
  menu.addItem({"Open_File...", "open", "o", false, {}});
  menu.addItem(NSMenuItem::separator());
  menu.addItem({"Quit", "quit", "q", false, {}});
  return menu;
}

std::string printed(const gio::VariantPtr& value) {
  if (!value) return "none";
  const gio::TextPtr text(g_variant_print(value.get(), FALSE));
  return text.get();
}

TEST(MenuLabelTest, UnderscoresAreNoMnemonics) {
  EXPECT_EQ(menuLabel("Settings..."), "Settings...");
  EXPECT_EQ(menuLabel("a_b__c"), "a__b____c");
  EXPECT_EQ(menuLabel(""), "");
}

TEST(MenuLayoutTest, TheTreeHasTheItemsInOrder) {
  const MenuLayout layout(threeItems());
  EXPECT_EQ(printed(layout.layout(0, -1, {})),
            "(0, {'children-display': <'submenu'>}, "
            "[<(1, {'enabled': <true>, 'label': <'Open__File...'>, 'visible': <true>}, @av [])>, "
            "<(2, {'enabled': <false>, 'type': <'separator'>, 'visible': <true>}, @av [])>, "
            "<(3, {'enabled': <true>, 'label': <'Quit'>, 'visible': <true>}, @av [])>])");
}

TEST(MenuLayoutTest, ADepthOfZeroIsTheItemAlone) {
  const MenuLayout layout(threeItems());
  EXPECT_EQ(printed(layout.layout(0, 0, {})), "(0, {'children-display': <'submenu'>}, [])");
  EXPECT_EQ(printed(layout.layout(3, -1, {"label"})), "(3, {'label': <'Quit'>}, [])");
}

TEST(MenuLayoutTest, OnlyWantedPropertiesAreTold) {
  const MenuLayout layout(threeItems());
  EXPECT_EQ(printed(layout.properties(1, {"label", "shortcut"})), "{'label': <'Open__File...'>}");
  EXPECT_EQ(printed(layout.property(1, "label")), "'Open__File...'");
}

TEST(MenuLayoutTest, KeyEquivalentsAreNotTold) {
  const MenuLayout layout(threeItems());
  EXPECT_EQ(printed(layout.property(1, "shortcut")), "none");
}

TEST(MenuLayoutTest, UnknownItemsAreNone) {
  const MenuLayout layout(threeItems());
  for (const std::int32_t id : {-1, 4, 2'147'483'647, -2'147'483'647 - 1}) {
    EXPECT_FALSE(layout.has(id)) << id;
    EXPECT_EQ(layout.item(id), nullptr) << id;
    EXPECT_EQ(printed(layout.property(id, "label")), "none") << id;
  }
  EXPECT_TRUE(layout.has(0));
  EXPECT_EQ(layout.item(0), nullptr);
}

TEST(MenuLayoutTest, AnEmptyMenuIsARootAlone) {
  const MenuLayout layout{NSMenu{}};
  EXPECT_EQ(printed(layout.layout(0, -1, {})), "(0, {'children-display': <'submenu'>}, [])");
}

}  // namespace
}  // namespace orvane::host::statusitem
