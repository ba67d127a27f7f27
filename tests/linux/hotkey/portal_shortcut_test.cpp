#include "linux/hotkey/portal_shortcut.h"

#include <gtest/gtest.h>

#include <optional>

#include "platform/event_hot_keys.h"
#include "stand_in_portal.h"

namespace orvane::host::hotkey {
namespace {

using gio::eventually;
using Lines = StandInPortal::Lines;

constexpr Combination kSuperShiftZ{0x06, cmdKey | shiftKey};
constexpr const char* kShortcut = "toggle-focus";

class PortalShortcutTest : public testing::Test {
 protected:
  ~PortalShortcutTest() override {
    // What was printed would be a complaint, and none of this is worth one.
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  }

  void bind() {
    shortcut_ = makePortalShortcut(bus_.address(), kSuperShiftZ, [this] { ++presses_; });
    ASSERT_TRUE(shortcut_);
  }
  void startPortal(PortalManners manners = {}) { portal_.emplace(bus_, std::move(manners)); }
  bool eventuallyBound() {
    return eventually([&] { return portal_->count("BindShortcuts") == 1; });
  }
  // Whether a press of the one shortcut arrives, and nothing of what came before it.
  bool hearsJustOnePress() {
    const int before = presses_;
    portal_->activate(portal_->session(), kShortcut);
    eventually([&] { return presses_ > before; });
    return presses_ == before + 1;
  }
  // Everything that is on its way to us or from us has arrived when the bus answers both of us.
  void settle() const {
    for (int round = 0; round < 3; ++round) {
      const auto asking = bus_.connect();
      gio::ask(asking.get(), "org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetId");
    }
  }

  gio::PrivateBus bus_;
  int presses_ = 0;
  std::optional<StandInPortal> portal_;
  std::unique_ptr<HotKeySource> shortcut_;

 private:
  void SetUp() override { testing::internal::CaptureStderr(); }
};

TEST_F(PortalShortcutTest, IsBoundForAProgramThatSaidFirstWhoItIs) {
  startPortal();
  bind();
  ASSERT_TRUE(eventuallyBound());
  const std::string session = portal_->session();
  EXPECT_EQ(portal_->calls(), (Lines{"Register('org.orvane.Orvane', {})",
                                     "CreateSession({'handle_token': <'orvane_create'>, "
                                     "'session_handle_token': <'orvane'>},)",
                                     "BindShortcuts('" + session +
                                         "', [('toggle-focus', {'description': <'Focus mode'>, "
                                         "'preferred_trigger': <'LOGO+SHIFT+z'>})], '', "
                                         "{'handle_token': <'orvane_bind'>})"}));
  EXPECT_EQ(portal_->errors(), Lines());
  EXPECT_TRUE(hearsJustOnePress());
  EXPECT_TRUE(hearsJustOnePress());
}

TEST_F(PortalShortcutTest, IsBoundByAPortalWithoutARegistry) {
  startPortal({.hasRegistry = false});
  bind();
  ASSERT_TRUE(eventuallyBound());
  EXPECT_EQ(portal_->count("Register"), 0U);
  EXPECT_TRUE(hearsJustOnePress());
}

TEST_F(PortalShortcutTest, IsBoundByAPortalWhoseSessionHandleIsAnObjectPath) {
  startPortal({.hasRegistry = false, .sessionHandleIsPath = true});
  bind();
  ASSERT_TRUE(eventuallyBound());
  EXPECT_TRUE(hearsJustOnePress());
}

TEST_F(PortalShortcutTest, SpeaksOverAConnectionOfItsOwnForEachShortcut) {
  startPortal();
  bind();
  ASSERT_TRUE(eventuallyBound());
  const auto first = portal_->session();
  const auto another = makePortalShortcut(bus_.address(), kSuperShiftZ, [] {});
  EXPECT_TRUE(eventually([&] { return portal_->count("BindShortcuts") == 2; }));
  EXPECT_NE(portal_->session(), first);
  EXPECT_EQ(portal_->errors(), Lines());
}

TEST_F(PortalShortcutTest, HearsOnlyOfItsOwnSessionAndShortcut) {
  startPortal();
  bind();
  ASSERT_TRUE(eventuallyBound());
  portal_->activate(portal_->session() + "_of_others", kShortcut);
  portal_->activate(portal_->session(), "another-shortcut");
  portal_->send("Deactivated",
                "(objectpath '" + portal_->session() + "', 'toggle-focus', uint64 1, @a{sv} {})");
  portal_->send("Activated", "('toggle-focus',)");
  EXPECT_TRUE(hearsJustOnePress());
}

TEST_F(PortalShortcutTest, HearsNothingOfASignalThatAnotherProgramSends) {
  startPortal();
  bind();
  ASSERT_TRUE(eventuallyBound());
  const auto stranger = bus_.connect();
  g_dbus_connection_emit_signal(
      stranger.get(), nullptr, "/org/freedesktop/portal/desktop",
      "org.freedesktop.portal.GlobalShortcuts", "Activated",
      g_variant_new_parsed("(%o, 'toggle-focus', uint64 1, @a{sv} {})", portal_->session().c_str()),
      nullptr);
  g_dbus_connection_flush_sync(stranger.get(), nullptr, nullptr);
  EXPECT_TRUE(hearsJustOnePress());
}

TEST_F(PortalShortcutTest, IsLetGoWhenTheSessionIsRefused) {
  for (const guint32 response : {1U, 2U}) {
    startPortal({.createResponse = response});
    bind();
    ASSERT_TRUE(eventually([&] { return portal_->count("CreateSession") == 1; }));
    settle();
    EXPECT_EQ(portal_->count("BindShortcuts"), 0U);
    EXPECT_EQ(portal_->count("CreateSession"), 1U) << "nobody is asked again";
    shortcut_.reset();
    portal_.reset();
  }
}

TEST_F(PortalShortcutTest, IsLetGoWhenTheSessionHandleIsNoPath) {
  startPortal({.sessionHandle = "nonsense"});
  bind();
  ASSERT_TRUE(eventually([&] { return portal_->count("CreateSession") == 1; }));
  settle();
  EXPECT_EQ(portal_->count("BindShortcuts"), 0U);
}

TEST_F(PortalShortcutTest, MalformedResponseIsNone) {
  startPortal({.answersAtAll = false});
  bind();
  ASSERT_TRUE(eventually([&] { return portal_->count("CreateSession") == 1; }));
  const auto path = portal_->requestPath("orvane_create");
  portal_->respond(path, "('done',)");
  settle();
  EXPECT_EQ(portal_->count("BindShortcuts"), 0U);
  portal_->respond(path, "(uint32 0, {'session_handle': <'" + portal_->session() + "'>})");
  EXPECT_TRUE(eventuallyBound());
}

// The user may think about it for as long as they like.
TEST_F(PortalShortcutTest, IsBoundOnceThoughTheResponseComesLateAndTwice) {
  startPortal({.answersAtAll = false});
  bind();
  ASSERT_TRUE(eventually([&] { return portal_->count("CreateSession") == 1; }));
  settle();
  const auto path = portal_->requestPath("orvane_create");
  const auto granted = "(uint32 0, {'session_handle': <'" + portal_->session() + "'>})";
  portal_->respond(path, granted);
  portal_->respond(path, granted);
  ASSERT_TRUE(eventuallyBound());
  settle();
  EXPECT_EQ(portal_->count("BindShortcuts"), 1U);
  EXPECT_TRUE(hearsJustOnePress());
}

// Desktops may keep the shortcut and give it a key later.
TEST_F(PortalShortcutTest, RefusedKeyIsQuietAndNotAskedForAgain) {
  startPortal({.bindResponse = 1});
  bind();
  ASSERT_TRUE(eventuallyBound());
  settle();
  EXPECT_EQ(portal_->count("BindShortcuts"), 1U);
  EXPECT_TRUE(hearsJustOnePress());
}

// As for a program that runs from where it was built.
TEST_F(PortalShortcutTest, IsBoundByARegistryThatDoesNotKnowTheProgramAndDoesNotMind) {
  startPortal({.knowsProgram = false, .needsProgram = false});
  bind();
  ASSERT_TRUE(eventuallyBound());
  EXPECT_EQ(portal_->errors(), Lines{"App info not found"});
  EXPECT_TRUE(hearsJustOnePress());
}

TEST_F(PortalShortcutTest, IsLetGoByARegistryThatDoesNotKnowTheProgramAndMinds) {
  startPortal({.knowsProgram = false});
  bind();
  const Lines refusals = {"App info not found", "An app id is required"};
  ASSERT_TRUE(eventually([&] { return portal_->errors() == refusals; }));
  settle();
  EXPECT_EQ(portal_->count("Register"), 1U) << "nobody is asked again";
  EXPECT_EQ(portal_->count("CreateSession"), 1U);
  EXPECT_EQ(portal_->count("BindShortcuts"), 0U);
}

TEST_F(PortalShortcutTest, ARegistryThatKnowsTheProgramLaterGrantsWhenItIsStartedAnew) {
  startPortal({.knowsProgram = false});
  bind();
  ASSERT_TRUE(eventually([&] { return portal_->errors().size() == 2; }));
  portal_.reset();
  startPortal();
  ASSERT_TRUE(eventuallyBound());
  EXPECT_EQ(portal_->errors(), Lines());
  EXPECT_TRUE(hearsJustOnePress());
}

TEST_F(PortalShortcutTest, PortalWithoutShortcutsIsQuiet) {
  startPortal({.hasShortcuts = false});
  bind();
  ASSERT_TRUE(eventually([&] { return portal_->count("Register") == 1; }));
  settle();
  EXPECT_EQ(portal_->calls().size(), 1U);
}

TEST_F(PortalShortcutTest, PortalThatComesLaterIsBound) {
  bind();
  settle();
  startPortal();
  ASSERT_TRUE(eventuallyBound());
  EXPECT_TRUE(hearsJustOnePress());
}

TEST_F(PortalShortcutTest, RestartedPortalIsBoundAgain) {
  startPortal();
  bind();
  ASSERT_TRUE(eventuallyBound());
  portal_.reset();
  settle();
  startPortal();
  ASSERT_TRUE(eventuallyBound());
  EXPECT_EQ(portal_->calls().size(), 3U);
  EXPECT_EQ(portal_->errors(), Lines());
  EXPECT_TRUE(hearsJustOnePress());
}

TEST_F(PortalShortcutTest, SessionThatTheDesktopClosesIsBoundAgain) {
  startPortal();
  bind();
  ASSERT_TRUE(eventuallyBound());
  settle();
  portal_->closeSession(portal_->session() + "_of_others");
  settle();
  EXPECT_EQ(portal_->count("BindShortcuts"), 1U);
  portal_->closeSession(portal_->session());
  EXPECT_TRUE(eventually([&] { return portal_->count("BindShortcuts") == 2; }));
  EXPECT_TRUE(hearsJustOnePress());
}

TEST_F(PortalShortcutTest, SessionThatIsClosedWithoutAGrantIsLetGo) {
  startPortal({.bindResponse = 1});
  bind();
  ASSERT_TRUE(eventuallyBound());
  settle();
  portal_->closeSession(portal_->session());
  settle();
  EXPECT_EQ(portal_->count("CreateSession"), 1U);
}

TEST_F(PortalShortcutTest, DesktopThatClosesWhatItGrantsIsLetGoInTheEnd) {
  startPortal();
  bind();
  for (std::size_t session = 1; session <= 4; ++session) {
    ASSERT_TRUE(eventually([&] { return portal_->count("BindShortcuts") == session; }));
    settle();
    portal_->closeSession(portal_->session());
  }
  settle();
  EXPECT_EQ(portal_->count("CreateSession"), 4U);
}

TEST_F(PortalShortcutTest, NewPortalGrantsWhatTheLastOneRefused) {
  startPortal({.createResponse = 1});
  bind();
  ASSERT_TRUE(eventually([&] { return portal_->count("CreateSession") == 1; }));
  portal_.reset();
  startPortal();
  ASSERT_TRUE(eventuallyBound());
  EXPECT_TRUE(hearsJustOnePress());
}

TEST_F(PortalShortcutTest, NeverAnsweredCanBeGivenUp) {
  startPortal({.answersAtAll = false});
  bind();
  ASSERT_TRUE(eventually([&] { return portal_->count("CreateSession") == 1; }));
  const auto path = portal_->requestPath("orvane_create");
  shortcut_.reset();
  portal_->respond(path, "(uint32 0, {'session_handle': <'" + portal_->session() + "'>})");
  settle();
  EXPECT_EQ(portal_->count("BindShortcuts"), 0U);
}

TEST_F(PortalShortcutTest, GivenUpIsHeardOfNoMore) {
  startPortal();
  bind();
  ASSERT_TRUE(eventuallyBound());
  shortcut_.reset();
  portal_->activate(portal_->session(), kShortcut);
  settle();
  EXPECT_EQ(presses_, 0);
}

TEST_F(PortalShortcutTest, BusThatGoesAwayIsSurvived) {
  startPortal();
  bind();
  ASSERT_TRUE(eventuallyBound());
  portal_.reset();
  bus_.stop();
  EXPECT_TRUE(eventually([] { return !g_main_context_pending(nullptr); }));
  shortcut_.reset();
  EXPECT_EQ(presses_, 0);
}

TEST_F(PortalShortcutTest, IsNoneWithoutABusOrALetter) {
  EXPECT_EQ(makePortalShortcut("", kSuperShiftZ, [] {}), nullptr);
  EXPECT_EQ(makePortalShortcut("unix:path=/nowhere/bus", kSuperShiftZ, [] {}), nullptr);
  EXPECT_EQ(makePortalShortcut(bus_.address(), {0x24, cmdKey}, [] {}), nullptr);
}

}  // namespace
}  // namespace orvane::host::hotkey
