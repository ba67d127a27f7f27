#include "linux/statusitem/status_bar.h"

#include <unistd.h>

#include <algorithm>

#include "../gio/private_bus.h"
#include "linux/gio/exported_object.h"
#include "linux/mainloop/main_loop.h"
#include "linux/paint/fonts.h"
#include "linux/paint/painter.h"

namespace orvane::host {
namespace {

using gio::CallReply;
using gio::eventually;
using Texts = std::vector<std::string>;

constexpr const char* kWatcher = R"(
<node>
  <interface name="org.kde.StatusNotifierWatcher">
    <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
  </interface>
</node>)";

// A panel's watcher, on a connection of its own.
class Watcher {
 public:
  explicit Watcher(const gio::PrivateBus& bus, int refusals = 0)
      : refusals_(refusals),
        connection_(bus.connect()),
        object_(connection_.get(), "/StatusNotifierWatcher", kWatcher,
                {[this](const std::string&, GVariant* arguments) { return registered(arguments); },
                 nullptr}) {
    name_ = g_bus_own_name_on_connection(connection_.get(), "org.kde.StatusNotifierWatcher",
                                         G_BUS_NAME_OWNER_FLAGS_NONE, nullptr, nullptr, nullptr,
                                         nullptr);
  }
  Watcher(const Watcher&) = delete;
  Watcher& operator=(const Watcher&) = delete;
  ~Watcher() {
    g_bus_unown_name(name_);
    g_dbus_connection_close_sync(connection_.get(), nullptr, nullptr);
  }

  Texts items;

 private:
  CallReply registered(GVariant* arguments) {
    if (refusals_ > 0) {
      --refusals_;
      return gio::CallError{"org.example.NotYet", "Not yet."};
    }
    const char* item = nullptr;
    g_variant_get(arguments, "(&s)", &item);
    items.emplace_back(item);
    return gio::VariantPtr();
  }

  int refusals_;
  gio::ObjectPtr<GDBusConnection> connection_;
  gio::ExportedObject object_;
  guint name_ = 0;
};

class Target final : public NSActionTarget {
 public:
  void perform(const std::string& action) override { performed.push_back(action); }
  Texts performed;
};

class StatusBarTest : public testing::Test {
 protected:
  void SetUp() override {
    ours_ = bus_.connect();
    panel_ = bus_.connect();
    ASSERT_TRUE(ours_);
    ASSERT_TRUE(panel_);
    statusBar_ = makeStatusBar({ours_.get(), *loop_, *painter_});
  }

  void showItem() {
    item_ = statusBar_->statusItem(NSVariableStatusItemLength);
    item_->button()->setImage(statusBar_->image("timer", "Orvane"));
    item_->button()->setImagePosition(NSCellImagePosition::imageOnly);
    NSMenu menu;
    menu.addItem({"Settings...", "openSettings", ",", false, target_});
    menu.addItem(NSMenuItem::separator());
    menu.addItem({"Quit", "quit", "q", false, target_});
    item_->setMenu(menu);
    // The name is asked for on one connection, and the item looked for on another.
    if (onBus_) {
      EXPECT_TRUE(eventually([&] { return isThere(); }));
    }
  }
  [[nodiscard]] static std::string itemName() {
    return "org.kde.StatusNotifierItem-" + std::to_string(getpid()) + "-1";
  }
  [[nodiscard]] std::string itemProperty(const std::string& name) const {
    return gio::property(panel_.get(), itemName(), "/StatusNotifierItem",
                         "org.kde.StatusNotifierItem", name);
  }
  [[nodiscard]] std::string menu(const std::string& method, const std::string& arguments) const {
    return gio::ask(panel_.get(), itemName(), "/MenuBar", "com.canonical.dbusmenu", method,
                    arguments)
        .text();
  }
  [[nodiscard]] bool isThere() const {
    return gio::ask(panel_.get(), "org.freedesktop.DBus", "/", "org.freedesktop.DBus",
                    "NameHasOwner", "('" + itemName() + "',)")
               .text() == "(true,)";
  }

  gio::PrivateBus bus_;
  bool onBus_ = true;
  std::unique_ptr<MainLoop> loop_ = makeMainLoop();
  std::unique_ptr<Painter> painter_ = makePainter(makeTypesetter());
  gio::ObjectPtr<GDBusConnection> ours_;
  gio::ObjectPtr<GDBusConnection> panel_;
  std::shared_ptr<Target> target_ = std::make_shared<Target>();
  std::unique_ptr<NSStatusBar> statusBar_;
  std::unique_ptr<NSStatusItem> item_;
};

TEST_F(StatusBarTest, TheItemTellsWhatHostsNeed) {
  showItem();
  EXPECT_EQ(itemProperty("Category"), "'ApplicationStatus'");
  EXPECT_EQ(itemProperty("Id"), "'org.orvane.Orvane'");
  EXPECT_EQ(itemProperty("Title"), "'Orvane'");
  EXPECT_EQ(itemProperty("Status"), "'Active'");
  EXPECT_EQ(itemProperty("IconName"), "'org.orvane.Orvane-symbolic'");
  EXPECT_EQ(itemProperty("IconThemePath"), "''");
  EXPECT_EQ(itemProperty("IconAccessibleDesc"), "'Orvane'");
  EXPECT_EQ(itemProperty("ItemIsMenu"), "true");
  EXPECT_EQ(itemProperty("Menu"), "'/MenuBar'");
  EXPECT_EQ(itemProperty("ToolTip"), "('', [], 'Orvane', '')");
  EXPECT_EQ(itemProperty("IconPixmap").substr(0, 10), "[(16, 16, ");
}

TEST_F(StatusBarTest, AllPropertiesCanBeHadAtOnce) {
  showItem();
  const auto all =
      gio::ask(panel_.get(), itemName(), "/StatusNotifierItem", "org.freedesktop.DBus.Properties",
               "GetAll", "('org.kde.StatusNotifierItem',)");
  ASSERT_TRUE(all.value) << all.error;
  EXPECT_NE(all.text().find("'Menu': <objectpath '/MenuBar'>"), std::string::npos);
}

TEST_F(StatusBarTest, ThereIsNoActivationBesideTheMenu) {
  showItem();
  EXPECT_EQ(gio::ask(panel_.get(), itemName(), "/StatusNotifierItem", "org.kde.StatusNotifierItem",
                     "Activate", "(1, 2)")
                .text(),
            "org.freedesktop.DBus.Error.UnknownMethod");
}

TEST_F(StatusBarTest, TheMenuCanBeRead) {
  showItem();
  EXPECT_EQ(menu("GetLayout", "(0, -1, ['label', 'type'])"),
            "(1, (0, {}, [<(1, {'label': <'Settings...'>}, @av [])>, "
            "<(2, {'type': <'separator'>}, @av [])>, <(3, {'label': <'Quit'>}, @av [])>]))");
  EXPECT_EQ(menu("GetGroupProperties", "([1, 99], ['label'])"),
            "([(1, {'label': <'Settings...'>})],)");
  EXPECT_EQ(menu("GetGroupProperties", "(@ai [], ['label'])"),
            "([(0, {}), (1, {'label': <'Settings...'>}), (2, {}), (3, {'label': <'Quit'>})],)");
  EXPECT_EQ(menu("GetProperty", "(3, 'label')"), "(<'Quit'>,)");
  EXPECT_EQ(menu("AboutToShow", "(0,)"), "(false,)");
  EXPECT_EQ(menu("AboutToShowGroup", "([0, 7],)"), "([], [7])");
  const auto version =
      gio::property(panel_.get(), itemName(), "/MenuBar", "com.canonical.dbusmenu", "Version");
  EXPECT_EQ(version, "3");
}

TEST_F(StatusBarTest, WrongNumbersAreErrors) {
  showItem();
  const std::string wrong = "org.freedesktop.DBus.Error.InvalidArgs";
  EXPECT_EQ(menu("GetLayout", "(9, -1, @as [])"), wrong);
  EXPECT_EQ(menu("GetProperty", "(1, 'shortcut')"), wrong);
  EXPECT_EQ(menu("Event", "(-4, 'clicked', <0>, uint32 0)"), wrong);
  EXPECT_EQ(menu("AboutToShow", "(9,)"), wrong);
}

TEST_F(StatusBarTest, ClicksCarryOutTheAction) {
  showItem();
  EXPECT_EQ(menu("Event", "(1, 'clicked', <0>, uint32 0)"), "()");
  EXPECT_EQ(menu("EventGroup", "([(3, 'clicked', <0>, uint32 0), (8, 'clicked', <0>, 0)],)"),
            "([8],)");
  EXPECT_TRUE(eventually([&] { return target_->performed.size() == 2; }));
  EXPECT_EQ(target_->performed, (Texts{"openSettings", "quit"}));
}

TEST_F(StatusBarTest, ATokenForTheFocusIsForTheNextChoiceAlone) {
  auto& done = target_->performed;
  statusBar_ = makeStatusBar({ours_.get(), *loop_, *painter_,
                              [&](const std::string& token) { done.push_back("token " + token); }});
  showItem();
  EXPECT_EQ(gio::ask(panel_.get(), itemName(), "/StatusNotifierItem", "org.kde.StatusNotifierItem",
                     "ProvideXdgActivationToken", "('a',)")
                .text(),
            "()");
  EXPECT_EQ(menu("Event", "(1, 'clicked', <0>, uint32 0)"), "()");
  EXPECT_EQ(menu("Event", "(3, 'clicked', <0>, uint32 0)"), "()");
  EXPECT_TRUE(eventually([&] { return done.size() == 4; }));
  EXPECT_EQ(done, (Texts{"token a", "openSettings", "token ", "quit"}));
}

TEST_F(StatusBarTest, OtherEventsAndSeparatorsDoNothing) {
  showItem();
  EXPECT_EQ(menu("Event", "(1, 'hovered', <0>, uint32 0)"), "()");
  EXPECT_EQ(menu("Event", "(0, 'opened', <0>, uint32 0)"), "()");
  EXPECT_EQ(menu("Event", "(2, 'clicked', <0>, uint32 0)"), "()");
  EXPECT_EQ(menu("AboutToShow", "(0,)"), "(false,)");
  EXPECT_TRUE(target_->performed.empty());
}

TEST_F(StatusBarTest, AClickWhoseTargetIsGoneDoesNothing) {
  showItem();
  target_.reset();
  EXPECT_EQ(menu("Event", "(1, 'clicked', <0>, uint32 0)"), "()");
  EXPECT_EQ(menu("AboutToShow", "(0,)"), "(false,)");
}

TEST_F(StatusBarTest, RegistersWithAWatcherThatIsThere) {
  const Watcher watcher(bus_);
  showItem();
  EXPECT_TRUE(eventually([&] { return !watcher.items.empty(); }));
  EXPECT_EQ(watcher.items, Texts{itemName()});
}

TEST_F(StatusBarTest, RegistersAgainWithEveryNewWatcher) {
  showItem();
  for (int round = 0; round < 3; ++round) {
    const Watcher watcher(bus_);
    EXPECT_TRUE(eventually([&] { return !watcher.items.empty(); })) << round;
    EXPECT_EQ(watcher.items, Texts{itemName()}) << round;
  }
}

TEST_F(StatusBarTest, AWatcherThatRefusesIsAskedOnceMore) {
  const Watcher watcher(bus_, 1);
  showItem();
  EXPECT_TRUE(eventually([&] { return !watcher.items.empty(); }));
}

TEST_F(StatusBarTest, TheItemGoesWithItsOwner) {
  showItem();
  EXPECT_TRUE(eventually([&] { return isThere(); }));
  item_.reset();
  EXPECT_TRUE(eventually([&] { return !isThere(); }));
}

TEST_F(StatusBarTest, ANewMenuReplacesTheOld) {
  showItem();
  NSMenu other;
  other.addItem({"Only", "only", "", false, target_});
  item_->setMenu(other);
  EXPECT_TRUE(eventually([&] { return menu("GetProperty", "(1, 'label')") == "(<'Only'>,)"; }));
  EXPECT_EQ(menu("GetProperty", "(3, 'label')"), "org.freedesktop.DBus.Error.InvalidArgs");
}

TEST_F(StatusBarTest, WithoutABusTheItemIsSeenByNobody) {
  statusBar_ = makeStatusBar({nullptr, *loop_, *painter_});
  onBus_ = false;
  showItem();
  EXPECT_FALSE(isThere());
  item_.reset();
}

TEST_F(StatusBarTest, ABusThatGoesTakesNothingAlong) {
  showItem();
  bus_.stop();
  EXPECT_TRUE(eventually([&] { return g_dbus_connection_is_closed(ours_.get()) != FALSE; }));
  item_->setMenu({});
  item_.reset();
}

}  // namespace
}  // namespace orvane::host
