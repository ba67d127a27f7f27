#include "linux/desktopicons/icon_script.h"

#include <gtest/gtest.h>

#include <string>

#include "linux/desktopicons/desktop_icons.h"

namespace orvane::host::desktopicons {
namespace {

std::string script(const std::string& value) {
  return "tell application \"System Events\"\n    set visible of process \"Finder\" to true\n"
         "end tell\ndo shell script \"defaults write com.apple.finder CreateDesktop -bool " +
         value + "; killall Finder\"";
}

TEST(IconScriptTest, UnderstandsTheTwoTexts) {
  EXPECT_TRUE(parseIconScript(script("false")).understood);
  EXPECT_EQ(parseIconScript(script("false")).wish, IconWish::hide);
  EXPECT_TRUE(parseIconScript(script("true")).understood);
  EXPECT_EQ(parseIconScript(script("true")).wish, IconWish::show);
}

TEST(IconScriptTest, RefusesEverythingElse) {
  const std::string hide = script("false");
  for (const auto& text : {std::string(), std::string("false"), script(""), script("maybe"),
                           script("false; rm -rf ~"), hide + "\n", " " + hide, hide.substr(1),
                           hide.substr(0, hide.size() - 1), hide.substr(0, 155), script("FALSE")}) {
    EXPECT_FALSE(parseIconScript(text).understood) << text;
    EXPECT_EQ(makeDesktopIcons({})->makeScript(text), nullptr) << text;
  }
}

}  // namespace
}  // namespace orvane::host::desktopicons
