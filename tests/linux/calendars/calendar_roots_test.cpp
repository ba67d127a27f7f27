#include "linux/calendars/calendar_roots.h"

#include <gmock/gmock.h>

#include <map>

namespace orvane::host {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> rootsWith(const std::map<std::string, std::string>& variables) {
  return calendarRoots([&](const std::string& name) -> std::optional<std::string> {
    const auto found = variables.find(name);
    return found == variables.end() ? std::nullopt : std::optional(found->second);
  });
}

TEST(CalendarRootsTest, ListsOurPlaceFirstAndThenThoseOfSyncTools) {
  EXPECT_THAT(rootsWith({{"HOME", "/home/ada"}, {"XDG_DATA_HOME", "/data"}}),
              ElementsAre("/data/orvane/calendars", "/home/ada/.calendars", "/data/calendars",
                          "/data/khal/calendars", "/data/vdirsyncer/calendars"));
}

TEST(CalendarRootsTest, FallsBackToTheDefaultDataFolder) {
  const auto expected =
      ElementsAre("/home/ada/.local/share/orvane/calendars", "/home/ada/.calendars",
                  "/home/ada/.local/share/calendars", "/home/ada/.local/share/khal/calendars",
                  "/home/ada/.local/share/vdirsyncer/calendars");
  EXPECT_THAT(rootsWith({{"HOME", "/home/ada"}}), expected);
  EXPECT_THAT(rootsWith({{"HOME", "/home/ada/"}, {"XDG_DATA_HOME", ""}}), expected);
  EXPECT_THAT(rootsWith({{"HOME", "/home/ada"}, {"XDG_DATA_HOME", "relative"}}), expected);
}

TEST(CalendarRootsTest, ManagesWithoutAHome) {
  EXPECT_THAT(rootsWith({{"XDG_DATA_HOME", "/data"}}),
              ElementsAre("/data/orvane/calendars", "/data/calendars", "/data/khal/calendars",
                          "/data/vdirsyncer/calendars"));
  EXPECT_THAT(rootsWith({}), IsEmpty());
}

}  // namespace
}  // namespace orvane::host
