#include "architecture/include_rules.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "support/test_paths.h"

namespace orvane::architecture {
namespace {

struct Sample {
  const char* path;
  const char* line;
};

TEST(IncludeRules, FindWhatTheMapForbids) {
  const Sample samples[] = {
      {"foundation/a.h", "#include \"platform/calendar.h\""},
      {"view/a.cpp", "#include \"settings/theme_mode.h\""},
      {"platform/a.h", "#include \"settings/theme_mode.h\""},
      {"settings/dashboard_settings.h", "#include \"agenda/records.h\""},
      {"settings/settings_viewer.h", "#include \"agenda/records.h\""},
      {"agenda/a.cpp", "#include \"dashboard/formatting.h\""},
      {"wallpaper/a.cpp", "#include \"agenda/records.h\""},
      {"dashboard/a.cpp", "#include \"app/app_delegate.h\""},
      {"dashboard/a.cpp", "#include \"linux/wire/reader_messages.h\""},
      {"app/app_delegate.cpp", "#include \"linux/mainloop/main_loop.h\""},
      {"agenda/a.cpp", "#include <unistd.h>"},
      {"agenda/a.cpp", "#include <glib.h>"},
      {"agenda/a.cpp", "  #  include <nlohmann/json.hpp>"},
      {"agenda/a.cpp", "#include \"records.h\""},
      {"nowhere/a.cpp", "#include \"foundation/date.h\""},
      {"linux/wayland/a.cpp", "#include \"linux/x11/connection.h\""},
      {"linux/wire/a.h", "#include \"linux/mainloop/main_loop.h\""},
      {"linux/settingswindow/a.cpp", "#include \"linux/settingswindow/gtk/look.h\""},
      {"linux/settingswindow/gtk/a.cpp", "#include \"linux/settingswindow/program_window.h\""},
      {"linux/settingswindow/wire/a.h", "#include \"linux/settingswindow/program_window.h\""},
      {"linux/wayland/a.cpp", "#include \"linux/settingswindow/wire/messages.h\""},
      {"linux/wayland/a.cpp", "#include \"agenda/records.h\""},
      {"linux/wayland/a.cpp", "#include \"app/app_delegate.h\""},
      {"platform/a.h", "struct wl_display;"},
      {"platform/a.h", "// Drawn with Cairo."},
      {"view/a.h", "class _cairo; cairo_t* context;"},
      {"foundation/a.h", "guint source = g_timeout_add(0);"},
  };
  for (const auto& [path, line] : samples) {
    EXPECT_EQ(violationsIn(path, std::string("\n") + line + "\n").size(), 1u) << path << line;
  }
}

TEST(IncludeRules, AllowWhatTheMapAllows) {
  const Sample samples[] = {
      {"foundation/a.h", "#include \"foundation/date.h\""},
      {"foundation/a.h", "#include <coroutine>"},
      {"platform/a.h", "#include \"view/geometry.h\""},
      {"agenda/a.cpp", "#include \"settings/dashboard_settings.h\""},
      {"settings/settings_view.h", "#include \"agenda/task_manager.h\""},
      {"settings/settings_view_tabs.cpp", "#include \"dashboard/appearance.h\""},
      {"app/app_delegate.h", "#include \"dashboard/wallpaper_dashboard_view.h\""},
      {"app/main.cpp", "#include \"linux/mainloop/main_loop.h\""},
      {"app/main.cpp", "#include <unistd.h>"},
      {"app/main_desktop.cpp", "#include \"linux/x11/x11_desktop.h\""},
      {"linux/x11/a.h", "#include <xcb/xcb.h>"},
      {"linux/x11/a.h", "#include \"linux/x11/connection.h\""},
      {"linux/calendars/a.cpp", "#include \"linux/wire/reader_messages.h\""},
      {"linux/settingswindow/a.cpp", "#include \"linux/settingswindow/wire/messages.h\""},
      {"linux/settingswindow/gtk/a.cpp", "#include \"linux/settingswindow/wire/messages.h\""},
      {"linux/settingswindow/wire/a.cpp", "#include \"linux/wire/byte_reader.h\""},
      {"view/a.h", "// Magical icing, wlan and boxcb are words like others."},
      {"view/a.cpp", "// #include <glib.h>"},
  };
  for (const auto& [path, line] : samples) {
    EXPECT_TRUE(violationsIn(path, line).empty()) << path << line;
  }
}

TEST(IncludeRules, NameFileAndLine) {
  EXPECT_EQ(violationsIn("agenda/a.cpp", "#include <vector>\n#include <glib.h>\n"),
            std::vector<std::string>{"agenda/a.cpp:2 must not include glib.h"});
}

std::string contentsOf(const std::filesystem::path& path) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

TEST(SourceTree, KeepsToTheMap) {
  const std::filesystem::path root = sourceFolder();
  std::set<std::string> folders;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
    const auto extension = entry.path().extension();
    if (extension != ".h" && extension != ".cpp") continue;
    const std::string path = entry.path().lexically_relative(root).generic_string();
    folders.insert(path.substr(0, path.find('/')));
    for (const auto& violation : violationsIn(path, contentsOf(entry.path()))) {
      ADD_FAILURE() << violation;
    }
  }
  // That it looked at all.
  for (const char* folder : {"foundation", "platform", "settings", "agenda", "view", "dashboard",
                             "wallpaper", "app", "linux"}) {
    EXPECT_TRUE(folders.contains(folder)) << folder;
  }
}

}  // namespace
}  // namespace orvane::architecture
