#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>

#include "../gio/private_bus.h"
#include "linux/desktopicons/desktop_icons.h"
#include "linux/gio/exported_object.h"

namespace orvane::host {
namespace {

namespace fs = std::filesystem;
using gio::eventually;
using Json = nlohmann::json;

constexpr const char* kShell = R"xml(
<node>
  <interface name="org.kde.PlasmaShell">
    <method name="evaluateScript">
      <arg type="s" direction="in"/><arg type="s" direction="out"/>
    </method>
  </interface>
</node>)xml";

std::string script(const std::string& value) {
  return "tell application \"System Events\"\n    set visible of process \"Finder\" to true\n"
         "end tell\ndo shell script \"defaults write com.apple.finder CreateDesktop -bool " +
         value + "; killall Finder\"";
}

// Plasma's shell as far as the scripts see it: what is set on each desktop, by its number. The real
// one runs the scripts; this one does what their last line calls.
class StandInShell {
 public:
  explicit StandInShell(const gio::PrivateBus& bus) : connection_(bus.connect()) {
    name_ = g_bus_own_name_on_connection(connection_.get(), "org.kde.plasmashell",
                                         G_BUS_NAME_OWNER_FLAGS_NONE, nullptr, nullptr, nullptr,
                                         nullptr);
    shell_ = std::make_unique<gio::ExportedObject>(
        connection_.get(), "/PlasmaShell", kShell,
        gio::ExportedObject::Handlers{[this](const std::string&, GVariant* arguments) {
                                        const char* text = nullptr;
                                        g_variant_get(arguments, "(&s)", &text);
                                        return answer(text);
                                      },
                                      nullptr});
    gio::ask(connection_.get(), "org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetId");
  }
  StandInShell(const StandInShell&) = delete;
  StandInShell& operator=(const StandInShell&) = delete;
  ~StandInShell() { g_bus_unown_name(name_); }

  std::map<unsigned, Json> desktops = {{1, {{"filterMode", "1"}}}, {7, Json::object()}};
  std::string error;
  std::vector<std::string> calls;

 private:
  gio::CallReply answer(const std::string& script) {
    if (!error.empty()) return gio::CallError{error, "Widgets are locked"};
    const auto end = script.rfind('\n');
    const auto begin = script.rfind('\n', end - 1) + 1;
    const auto bracket = script.find('(', begin);
    calls.push_back(script.substr(begin, bracket - begin));
    const auto arguments = Json::parse("[" + script.substr(bracket + 1, end - bracket - 3) + "]");
    std::string printed;
    if (calls.back() == "capture") printed = capture().dump() + "\n";
    if (calls.back() == "hide") hide(arguments[0], arguments[1]);
    if (calls.back() == "giveBack") giveBack(arguments[0], arguments[1]);
    return gio::owned(g_variant_new("(s)", printed.c_str()));
  }

  [[nodiscard]] Json capture() const {
    auto all = Json::array();
    for (const auto& [id, set] : desktops) all.push_back({{"id", id}, {"set", set}});
    return all;
  }
  void hide(const Json& before, const Json& written) {
    for (const auto& each : before) desktops[each["id"].get<unsigned>()].update(written);
  }
  void giveBack(const Json& before, const Json& written) {
    for (const auto& each : before) {
      auto& set = desktops[each["id"].get<unsigned>()];
      if (set == written || set["filterMode"] == written["filterMode"]) set = each["set"];
    }
  }

  const gio::ObjectPtr<GDBusConnection> connection_;
  guint name_ = 0;
  std::unique_ptr<gio::ExportedObject> shell_;
};

class PlasmaTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "orvane-icons-XXXXXX").string();
    folder_ = mkdtemp(pattern.data());
    ours_ = bus_.connect();
    icons_ = make();
  }
  void TearDown() override { fs::remove_all(folder_); }

  [[nodiscard]] std::unique_ptr<DesktopIcons> make() const {
    return makeDesktopIcons({"KDE", ours_.get(), folder_ / "desktop-icons"});
  }
  void run(const std::string& value) {
    const auto parsed = icons_->makeScript(script(value));
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->executeAndReturnError(), std::nullopt);
  }
  [[nodiscard]] bool remembered() const { return fs::exists(folder_ / "desktop-icons"); }
  [[nodiscard]] bool isHidden(unsigned desktop) {
    return shell_.desktops[desktop].value("filterMode", "") == "2";
  }
  // Whatever is on its way has been answered.
  void settle() const {
    for (int round = 0; round < 3; ++round) {
      gio::ask(ours_.get(), "org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetId");
    }
  }

  gio::PrivateBus bus_;
  fs::path folder_;
  gio::ObjectPtr<GDBusConnection> ours_;
  StandInShell shell_{bus_};
  std::unique_ptr<DesktopIcons> icons_;
};

TEST_F(PlasmaTest, TheFilterOfEveryDesktopIsSetAndGivenBack) {
  const auto before = shell_.desktops;
  run("false");
  EXPECT_TRUE(eventually([&] { return isHidden(1) && isHidden(7); }));
  EXPECT_TRUE(remembered());
  run("true");
  EXPECT_TRUE(eventually([&] { return !remembered(); }));
  EXPECT_EQ(shell_.desktops, before);
  EXPECT_EQ(shell_.calls, (std::vector<std::string>{"capture", "hide", "giveBack"}));
}

TEST_F(PlasmaTest, ARepeatedHideKeepsTheFirstChoice) {
  const auto before = shell_.desktops;
  run("false");
  EXPECT_TRUE(eventually([&] { return isHidden(1); }));
  run("false");
  EXPECT_TRUE(eventually([&] { return shell_.calls.size() == 3; }));
  run("true");
  EXPECT_TRUE(eventually([&] { return !remembered(); }));
  EXPECT_EQ(shell_.desktops, before);
}

TEST_F(PlasmaTest, WhatACrashLeftIsGivenBackAtTheNextStart) {
  const auto before = shell_.desktops;
  run("false");
  EXPECT_TRUE(eventually([&] { return isHidden(1); }));
  icons_ = make();
  icons_->giveBackLeftovers();
  EXPECT_TRUE(eventually([&] { return !remembered(); }));
  EXPECT_EQ(shell_.desktops, before);
}

TEST_F(PlasmaTest, WithoutFolderDesktopsNothingIsRemembered) {
  shell_.desktops.clear();
  run("false");
  EXPECT_TRUE(eventually([&] { return !shell_.calls.empty(); }));
  settle();
  EXPECT_FALSE(remembered());
}

TEST_F(PlasmaTest, AShellThatForbidsScriptsIsLeftAloneAndOneLineSaysSo) {
  shell_.error = "org.freedesktop.DBus.Error.Failed";
  testing::internal::CaptureStderr();
  run("false");
  settle();
  run("false");
  settle();
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "orvane: Plasma did not let its icons be hidden.\n");
  EXPECT_FALSE(remembered());
}

TEST_F(PlasmaTest, AShellThatIsNotThereIsQuiet) {
  shell_.error = "org.freedesktop.DBus.Error.ServiceUnknown";
  testing::internal::CaptureStderr();
  run("false");
  settle();
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_FALSE(remembered());
}

// It may have been about to do it.
TEST_F(PlasmaTest, AShellThatGoesAwayOverItIsGivenBackLater) {
  const auto before = shell_.desktops;
  run("false");
  EXPECT_TRUE(eventually([&] { return isHidden(1); }));
  shell_.error = "org.freedesktop.DBus.Error.NoReply";
  run("true");
  settle();
  EXPECT_TRUE(remembered());
  shell_.error.clear();
  run("true");
  EXPECT_TRUE(eventually([&] { return !remembered(); }));
  EXPECT_EQ(shell_.desktops, before);
}

}  // namespace
}  // namespace orvane::host
