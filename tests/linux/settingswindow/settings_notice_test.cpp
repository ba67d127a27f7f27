#include "linux/settingswindow/settings_notice.h"

#include <vector>

#include "../gio/private_bus.h"
#include "linux/gio/exported_object.h"

namespace orvane::host {
namespace {

using gio::eventually;

constexpr const char* kSentence = "The settings window is not installed.";

constexpr const char* kNotifications = R"xml(
<node>
  <interface name="org.freedesktop.Notifications">
    <method name="Notify">
      <arg type="s" direction="in"/><arg type="u" direction="in"/><arg type="s" direction="in"/>
      <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="as" direction="in"/>
      <arg type="a{sv}" direction="in"/><arg type="i" direction="in"/>
      <arg type="u" direction="out"/>
    </method>
  </interface>
</node>)xml";

TEST(SettingsNoticeTest, WhatIsSaidIsANotificationThatReplacesTheLast) {
  const gio::PrivateBus bus;
  const auto ours = bus.connect();
  const auto desktop = bus.connect();
  std::vector<std::string> shown;
  const gio::ExportedObject object(
      desktop.get(), "/org/freedesktop/Notifications", kNotifications,
      {[&](const std::string&, GVariant* arguments) -> gio::CallReply {
         guint32 replaces = 0;
         const char* summary = nullptr;
         const char* body = nullptr;
         g_variant_get(arguments, "(&su&s&s&sasa{sv}i)", nullptr, &replaces, nullptr, &summary,
                       &body, nullptr, nullptr, nullptr);
         shown.push_back(std::to_string(replaces) + " " + summary + ": " + body);
         return gio::owned(g_variant_new("(u)", 7U));
       },
       nullptr});
  const guint name =
      g_bus_own_name_on_connection(desktop.get(), "org.freedesktop.Notifications",
                                   G_BUS_NAME_OWNER_FLAGS_NONE, nullptr, nullptr, nullptr, nullptr);
  const auto notice = makeSettingsNotice(ours.get());
  gio::ask(ours.get(), "org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetId");
  notice->say("Orvane Settings", kSentence);
  EXPECT_TRUE(eventually([&] { return shown.size() == 1; }));
  // The bus has the answer when it has heard what the desktop asked after it, and passes it on
  // before it answers what we ask then.
  gio::ask(desktop.get(), "org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetId");
  gio::ask(ours.get(), "org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetId");
  notice->say("Orvane Settings", "Another.");
  EXPECT_TRUE(eventually([&] { return shown.size() == 2; }));
  EXPECT_EQ(shown,
            (std::vector<std::string>{"0 Orvane Settings: The settings window is not installed.",
                                      "7 Orvane Settings: Another."}));
  g_bus_unown_name(name);
}

TEST(SettingsNoticeTest, WithoutABusALineIsSaid) {
  const auto notice = makeSettingsNotice(nullptr);
  testing::internal::CaptureStderr();
  notice->say("Orvane Settings", kSentence);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "orvane: The settings window is not installed.\n");
}

TEST(SettingsNoticeTest, WithoutANotificationServiceALineIsSaid) {
  const gio::PrivateBus bus;
  const auto ours = bus.connect();
  const auto notice = makeSettingsNotice(ours.get());
  testing::internal::CaptureStderr();
  notice->say("Orvane Settings", kSentence);
  gio::ask(ours.get(), "org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetId");
  gio::ask(ours.get(), "org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetId");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "orvane: The settings window is not installed.\n");
}

}  // namespace
}  // namespace orvane::host
