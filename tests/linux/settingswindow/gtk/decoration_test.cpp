#include "linux/settingswindow/gtk/decoration.h"

#include <gtest/gtest.h>

namespace orvane::window {
namespace {

TEST(Decoration, HasTheDesktopsButtonsAndThoseThatTheWindowNeeds) {
  const struct {
    const char* desktop;
    const char* buttons;
  } cases[] = {{"menu:minimize,maximize,close", "menu:minimize,maximize,close"},
               {"menu:close", "menu:minimize,close"},
               {"appmenu:close", "appmenu:minimize,close"},
               {"close,minimize:", "close,minimize:"},
               {"close:menu", "close,minimize:menu"},
               {"close:", "close,minimize:"},
               {":", ":minimize,close"},
               {"", ":minimize,close"},
               {"menu", "menu:minimize,close"},
               {"minimize:close", "minimize:close"}};
  for (const auto& [desktop, buttons] : cases) {
    EXPECT_EQ(titleButtons(desktop, true, true), buttons) << desktop;
  }
}

TEST(Decoration, LeavesOutWhatTheWindowHasNoUseFor) {
  EXPECT_EQ(titleButtons("menu:minimize,close", true, false), "menu:close");
  EXPECT_EQ(titleButtons("menu:minimize,close", false, true), "menu:minimize");
  EXPECT_EQ(titleButtons("close:minimize", false, false), ":");
}

}  // namespace
}  // namespace orvane::window
