#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <map>
#include <nlohmann/json.hpp>

#include "../gio/private_bus.h"
#include "fakes/manual_main_actor.h"
#include "linux/desktopicons/desktop_icons.h"
#include "linux/desktopicons/icon_memory.h"
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
  std::function<void()> heldBack;  // called before something is hidden

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
    if (calls.back() == "hide" && heldBack) heldBack();
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

  [[nodiscard]] std::unique_ptr<DesktopIcons> make() {
    return makeDesktopIcons({"KDE", ours_.get(), folder_ / "desktop-icons", &actor_});
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

  // What is remembered of the desktops, by their numbers.
  [[nodiscard]] std::map<unsigned, Json> record() const {
    const auto known = desktopicons::IconMemory(folder_ / "desktop-icons").find("plasma");
    EXPECT_TRUE(known);
    const auto before = Json::parse(known ? known->before : "[]");
    std::map<unsigned, Json> desktops;
    for (const auto& each : before) desktops[each["id"].get<unsigned>()] = each["set"];
    return desktops;
  }

  gio::PrivateBus bus_;
  fakes::ManualMainActor actor_;
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

TEST_F(PlasmaTest, ARepeatedHideTakesInANewDesktop) {
  run("false");
  EXPECT_TRUE(eventually([&] { return isHidden(1) && isHidden(7); }));
  auto before = record();
  shell_.desktops[9] = {{"filterMode", "1"}, {"filterPattern", "*.txt"}};
  run("false");
  EXPECT_TRUE(eventually([&] { return isHidden(9); }));
  before[9] = {{"filterMode", "1"}, {"filterPattern", "*.txt"}};
  EXPECT_EQ(record(), before);
  run("true");
  EXPECT_TRUE(eventually([&] { return !remembered(); }));
  EXPECT_EQ(shell_.desktops, before);
}

TEST_F(PlasmaTest, ANewScreenGetsHiddenIconsTooAndNothingElseIsTouched) {
  run("false");
  EXPECT_TRUE(eventually([&] { return isHidden(1) && isHidden(7); }));
  auto before = record();
  shell_.desktops[1] = {{"filterMode", "0"}};  // by the user
  icons_->screensChanged();
  actor_.advance(std::chrono::seconds(1));  // the shell is slow to set the screen up
  EXPECT_TRUE(eventually([&] { return shell_.calls.back() == "capture"; }));
  settle();
  EXPECT_EQ(record(), before);
  shell_.desktops[9] = Json::object();
  shell_.heldBack = [&] { before[9] = record()[9]; };
  actor_.advance(std::chrono::seconds(3));
  EXPECT_TRUE(eventually([&] { return isHidden(9); }));
  EXPECT_EQ(before[9], Json::object()) << "it was not written down before the change";
  EXPECT_FALSE(isHidden(1));
  run("true");
  EXPECT_TRUE(eventually([&] { return !remembered(); }));
  EXPECT_EQ(shell_.desktops[9], Json::object());
  EXPECT_EQ(shell_.desktops[1], Json({{"filterMode", "0"}}));
  EXPECT_EQ(shell_.desktops[7], Json::object());
}

TEST_F(PlasmaTest, NewScreensAreNotLookedAtWhereNothingIsHidden) {
  icons_->screensChanged();
  actor_.advance(std::chrono::minutes(1));
  run("false");
  EXPECT_TRUE(eventually([&] { return isHidden(1); }));
  run("true");
  EXPECT_TRUE(eventually([&] { return !remembered(); }));
  const auto calls = shell_.calls.size();
  icons_->screensChanged();
  actor_.advance(std::chrono::minutes(1));
  settle();
  EXPECT_EQ(shell_.calls.size(), calls);
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
