#include "linux/desktopicons/desktop_icons.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>

#include "../gio/private_bus.h"
#include "linux/desktopicons/desktop_kind.h"
#include "linux/desktopicons/settings_value.h"
#include "linux/gio/exported_object.h"

namespace orvane::host {
namespace {

namespace fs = std::filesystem;
using desktopicons::DesktopKind;
using desktopicons::desktopKind;
using gio::eventually;

std::string script(const std::string& value) {
  return "tell application \"System Events\"\n    set visible of process \"Finder\" to true\n"
         "end tell\ndo shell script \"defaults write com.apple.finder CreateDesktop -bool " +
         value + "; killall Finder\"";
}

TEST(DesktopKindTest, GoesByTheNamesOfTheSession) {
  EXPECT_EQ(desktopKind("XFCE"), DesktopKind::xfce);
  EXPECT_EQ(desktopKind("ubuntu:GNOME"), DesktopKind::gnome);
  EXPECT_EQ(desktopKind("GNOME-Classic:GNOME"), DesktopKind::gnome);
  EXPECT_EQ(desktopKind("X-Cinnamon"), DesktopKind::cinnamon);
  EXPECT_EQ(desktopKind("MATE"), DesktopKind::mate);
  EXPECT_EQ(desktopKind("Budgie:GNOME"), DesktopKind::budgie);
  EXPECT_EQ(desktopKind("KDE"), DesktopKind::plasma);
  EXPECT_EQ(desktopKind("sway"), DesktopKind::none);
  EXPECT_EQ(desktopKind(""), DesktopKind::none);
  EXPECT_EQ(desktopKind(":::"), DesktopKind::none);
  EXPECT_EQ(desktopKind("GNOMELIKE"), DesktopKind::none);
}

// xfconf's part of the bus, with one property that may be absent.
constexpr const char* kXfconf = R"xml(
<node>
  <interface name="org.xfce.Xfconf">
    <method name="GetProperty">
      <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="v" direction="out"/>
    </method>
    <method name="SetProperty">
      <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="v" direction="in"/>
    </method>
    <method name="ResetProperty">
      <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="b" direction="in"/>
    </method>
  </interface>
</node>)xml";

class XfceTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "orvane-icons-XXXXXX").string();
    folder_ = mkdtemp(pattern.data());
    ours_ = bus_.connect();
    theirs_ = bus_.connect();
    name_ =
        g_bus_own_name_on_connection(theirs_.get(), "org.xfce.Xfconf", G_BUS_NAME_OWNER_FLAGS_NONE,
                                     nullptr, nullptr, nullptr, nullptr);
    xfconf_ = std::make_unique<gio::ExportedObject>(
        theirs_.get(), "/org/xfce/Xfconf", kXfconf,
        gio::ExportedObject::Handlers{[this](const std::string& method, GVariant* arguments) {
                                        return answer(method, arguments);
                                      },
                                      nullptr});
    gio::ask(theirs_.get(), "org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetId");
    icons_ = makeDesktopIcons({"XFCE", ours_.get(), folder_ / "desktop-icons"});
  }
  void TearDown() override {
    g_bus_unown_name(name_);
    fs::remove_all(folder_);
  }

  gio::CallReply answer(const std::string& method, GVariant* arguments) {
    ++calls_;
    if (method == "GetProperty") {
      if (!foreign_.empty()) {
        return gio::owned(g_variant_new_parsed("(%v,)", g_variant_new_string(foreign_.c_str())));
      }
      if (!style_) return gio::CallError{"org.xfce.Xfconf.Error.PropertyNotFound", "Not there."};
      return gio::owned(g_variant_new("(v)", g_variant_new_int32(*style_)));
    }
    if (method == "ResetProperty") {
      style_.reset();
    } else {
      GVariant* value = nullptr;
      g_variant_get_child(arguments, 2, "v", &value);
      style_ = g_variant_get_int32(value);
      g_variant_unref(value);
    }
    return gio::VariantPtr();
  }
  void run(const std::string& value) {
    const auto parsed = icons_->makeScript(script(value));
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->executeAndReturnError(), std::nullopt);
  }
  void leaveRecord(const std::string& before, const std::string& written) const {
    std::ofstream(folder_ / "desktop-icons")
        << "[xfce]\nbefore=" << before << "\nwritten=" << written << "\n";
  }
  // Everything that is on its way between us and xfconf has arrived.
  void settle() const {
    for (const auto* connection : {&ours_, &theirs_, &ours_}) {
      gio::ask(connection->get(), "org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetId");
    }
  }
  [[nodiscard]] bool remembered() const { return fs::exists(folder_ / "desktop-icons"); }

  gio::PrivateBus bus_;
  fs::path folder_;
  gio::ObjectPtr<GDBusConnection> ours_;
  gio::ObjectPtr<GDBusConnection> theirs_;
  guint name_ = 0;
  std::unique_ptr<gio::ExportedObject> xfconf_;
  std::optional<int> style_ = 2;
  std::string foreign_;  // a value that is no number; empty: there is none
  int calls_ = 0;
  std::unique_ptr<DesktopIcons> icons_;
};

TEST_F(XfceTest, TheStyleIsSetAndGivenBack) {
  run("false");
  EXPECT_TRUE(eventually([&] { return style_ == 0; }));
  EXPECT_TRUE(remembered());
  run("true");
  EXPECT_TRUE(eventually([&] { return style_ == 2 && !remembered(); }));
}

TEST_F(XfceTest, AStyleThatWasNotSetIsResetAndNotWritten) {
  style_.reset();
  run("false");
  EXPECT_TRUE(eventually([&] { return style_ == 0; }));
  run("true");
  EXPECT_TRUE(eventually([&] { return !style_ && !remembered(); }));
}

TEST_F(XfceTest, AStyleThatTheUserChoseMeanwhileStays) {
  run("false");
  EXPECT_TRUE(eventually([&] { return style_ == 0; }));
  style_ = 1;
  run("true");
  EXPECT_TRUE(eventually([&] { return !remembered(); }));
  EXPECT_EQ(style_, 1);
}

TEST_F(XfceTest, AQuickToggleEndsAsItBegan) {
  run("false");
  run("true");
  run("false");
  run("true");
  EXPECT_TRUE(eventually([&] { return calls_ >= 4 && !remembered(); }));
  EXPECT_EQ(style_, 2);
}

TEST_F(XfceTest, WhatACrashLeftIsGivenBackAtTheNextStart) {
  run("false");
  EXPECT_TRUE(eventually([&] { return style_ == 0; }));
  icons_ = makeDesktopIcons({"XFCE", ours_.get(), folder_ / "desktop-icons"});
  icons_->giveBackLeftovers();
  EXPECT_TRUE(eventually([&] { return style_ == 2; }));
}

TEST_F(XfceTest, ADamagedRecordGivesTheIconsBackByTheDesktopsOwnChoice) {
  for (const char* before : {"", "two", "2x", "0x2", "2147483648", "99999999999999999999"}) {
    SCOPED_TRACE(before);
    style_ = 0;
    leaveRecord(before, "0");
    icons_ = makeDesktopIcons({"XFCE", ours_.get(), folder_ / "desktop-icons"});
    icons_->giveBackLeftovers();
    EXPECT_TRUE(eventually([&] { return !remembered(); }));
    EXPECT_EQ(style_, std::nullopt);
  }
}

TEST_F(XfceTest, ARecordThatDoesNotTellWhatWasWrittenChangesNothing) {
  for (const char* written : {"", "zero", "99999999999999999999"}) {
    SCOPED_TRACE(written);
    leaveRecord("1", written);
    icons_ = makeDesktopIcons({"XFCE", ours_.get(), folder_ / "desktop-icons"});
    icons_->giveBackLeftovers();
    EXPECT_TRUE(eventually([&] { return !remembered(); }));
    EXPECT_EQ(style_, 2);
  }
}

TEST_F(XfceTest, AStyleThatIsNoNumberIsLeftAlone) {
  foreign_ = "none";
  run("false");
  EXPECT_TRUE(eventually([&] { return calls_ == 1; }));
  settle();
  EXPECT_FALSE(remembered());
  run("true");
  settle();
  EXPECT_EQ(calls_, 1);
}

TEST_F(XfceTest, AStyleThatIsNoNumberAnyMoreIsLeftAlone) {
  style_.reset();
  run("false");
  EXPECT_TRUE(eventually([&] { return style_ == 0 && remembered(); }));
  settle();
  foreign_ = "none";
  const int before = calls_;
  run("true");
  EXPECT_TRUE(eventually([&] { return !remembered(); }));
  EXPECT_EQ(calls_, before + 1);
}

TEST_F(XfceTest, WithoutLeftoversNobodyIsAsked) {
  icons_->giveBackLeftovers();
  gio::ask(ours_.get(), "org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetId");
  gio::ask(theirs_.get(), "org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetId");
  EXPECT_EQ(calls_, 0);
}

TEST_F(XfceTest, WithoutXfconfNothingIsRemembered) {
  xfconf_.reset();
  run("false");
  gio::ask(ours_.get(), "org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetId");
  gio::ask(ours_.get(), "org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetId");
  EXPECT_FALSE(remembered());
}

TEST(DesktopIconsTest, WhereThereAreNoIconsScriptsDoNothing) {
  for (const std::string desktop : {"sway", "", "XFCE"}) {
    const auto icons = makeDesktopIcons({desktop, nullptr, "/nowhere/desktop-icons"});
    const auto hide = icons->makeScript(script("false"));
    ASSERT_TRUE(hide) << desktop;
    EXPECT_EQ(hide->executeAndReturnError(), std::nullopt) << desktop;
    icons->giveBackLeftovers();
  }
}

TEST(DesktopIconsTest, TheStateFileFollowsTheEnvironment) {
  using Variables = std::map<std::string, std::string>;
  const auto path = [](const Variables& variables) {
    return desktopIconsStatePath([&](const std::string& name) -> std::optional<std::string> {
      const auto found = variables.find(name);
      return found == variables.end() ? std::nullopt : std::optional(found->second);
    });
  };
  EXPECT_EQ(path({{"XDG_STATE_HOME", "/s"}, {"HOME", "/h"}}), "/s/orvane/desktop-icons");
  EXPECT_EQ(path({{"XDG_STATE_HOME", "s"}, {"HOME", "/h"}}),
            "/h/.local/state/orvane/desktop-icons");
  EXPECT_EQ(path({}), "");
}

}  // namespace
}  // namespace orvane::host
