#include "linux/login/autostart_entry.h"

#include <gmock/gmock.h>

namespace orvane::host::login {
namespace {

using testing::HasSubstr;
using testing::Not;

struct Entry {
  const char* name;
  std::string text;
  bool starts;
};

TEST(AutostartEntryTest, StartsOnlyWhatTheUserWantsStarted) {
  const std::string plain = "[Desktop Entry]\nType=Application\nName=Orvane\nExec=orvane\n";
  const std::vector<Entry> entries = {
      {"plain", plain, true},
      {"hidden by the user", plain + "Hidden=true\n", false},
      {"not hidden", plain + "Hidden=false\n", true},
      {"switched off in GNOME", plain + "X-GNOME-Autostart-enabled=false\n", false},
      {"switched on in GNOME", plain + "X-GNOME-Autostart-enabled=true\n", true},
      {"hidden in another group", plain + "[Other]\nHidden=true\n", true},
      {"with a word for a switch", plain + "Hidden=perhaps\n", true},
      {"empty", "", false},
      {"no entry", "exec orvane\n", false},
      {"without a command", "[Desktop Entry]\nType=Application\nName=Orvane\n", false},
      {"a link", "[Desktop Entry]\nType=Link\nExec=orvane\n", false},
      {"binary", std::string("\0\1\2\xff", 4), false},
      {"commented and translated",
       "# mine\n[Desktop Entry]\nType=Application\nName[de]=Orvane\nExec=orvane\n", true},
  };
  for (const auto& entry : entries) {
    EXPECT_EQ(startsAtLogin(entry.text), entry.starts) << entry.name;
  }
}

TEST(AutostartEntryTest, AFreshEntryStartsTheProgram) {
  const auto entry = entryStarting("/usr/bin/orvane", "");
  EXPECT_TRUE(startsAtLogin(entry));
  EXPECT_EQ(entry,
            "[Desktop Entry]\nType=Application\nName=Orvane\n"
            "Exec=env ORVANE_START=login \"/usr/bin/orvane\"\nTryExec=/usr/bin/orvane\n"
            "Icon=org.orvane.Orvane\n");
}

TEST(AutostartEntryTest, ADisabledEntryIsEnabledAndKeepsTheRest) {
  const auto entry = entryStarting("/usr/bin/orvane",
                                   "# mine\n[Desktop Entry]\nType=Application\nExec=old\n"
                                   "Hidden=true\nX-GNOME-Autostart-enabled=false\n"
                                   "X-GNOME-Autostart-Delay=5\n");
  EXPECT_TRUE(startsAtLogin(entry));
  EXPECT_THAT(entry, HasSubstr("# mine"));
  EXPECT_THAT(entry, HasSubstr("X-GNOME-Autostart-Delay=5"));
  EXPECT_THAT(entry, Not(HasSubstr("Hidden")));
  EXPECT_THAT(entry, Not(HasSubstr("old")));
}

TEST(AutostartEntryTest, SomethingElseInItsPlaceIsReplaced) {
  EXPECT_TRUE(startsAtLogin(entryStarting("/usr/bin/orvane", "not an entry")));
}

TEST(AutostartEntryTest, OddPathsAreOneArgument) {
  EXPECT_THAT(entryStarting("/opt/my apps/100% $HOME/orvane", ""),
              HasSubstr(R"(Exec=env ORVANE_START=login "/opt/my apps/100%% \\$HOME/orvane")"));
}

}  // namespace
}  // namespace orvane::host::login
