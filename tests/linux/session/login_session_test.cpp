#include "linux/session/login_session.h"

#include <gtest/gtest.h>

#include <optional>

#include "fakes/manual_main_actor.h"
#include "stand_in_logind.h"

namespace orvane::host {
namespace {

using gio::eventually;
using Answers = StandInLogind::Answers;
using Session = StandInLogind::Session;
using Calls = std::vector<std::string>;

constexpr const char* kId = "2";

class LoginSessionTest : public testing::Test {
 protected:
  ~LoginSessionTest() override { EXPECT_EQ(testing::internal::GetCapturedStderr(), ""); }

  void startLogind(const Answers& answers) { logind_.emplace(bus_, answers); }
  // With one session, "ours", that is found by its id.
  void startLogind() {
    startLogind({.byId = "ours"});
    logind_->addSession("ours", {});
  }
  void make(LoginSessionOptions options) {
    sight_ = makeLoginSession(std::move(options), actor_);
    changes_ = sight_->changed().subscribe([this] { ++heard_; });
  }
  [[nodiscard]] LoginSessionOptions options() const {
    return {.systemBus = bus_.address(), .sessionId = kId, .x11Display = ":7"};
  }
  // Until logind was asked for the state so many times.
  void follow(int readings = 1) {
    sight_->follow();
    actor_.advance(std::chrono::seconds(2));
    if (readings > 0) {
      EXPECT_TRUE(eventually([&] { return logind_->readings() >= readings; }));
    }
  }
  bool eventuallyHidden(bool isHidden = true) {
    return eventually([&] { return sight_->isHidden() == isHidden; });
  }
  // Everything that is on its way to us or from us has arrived when the bus answered both of us.
  void settle() const {
    for (int round = 0; round < 5; ++round) {
      const auto asking = bus_.connect();
      gio::askBus(asking.get(), "GetId");
    }
  }
  // Whether what happens to the session is told.
  bool isFollowed(const std::string& session) {
    logind_->become(session, true, true);
    const bool wasTold = eventuallyHidden();
    logind_->become(session, true, false);
    return wasTold && eventuallyHidden(false);
  }

  gio::PrivateBus bus_;
  fakes::ManualMainActor actor_;
  std::optional<StandInLogind> logind_;
  std::unique_ptr<SessionSight> sight_;
  Subscription changes_;
  int heard_ = 0;

 private:
  void SetUp() override { testing::internal::CaptureStderr(); }
};

TEST_F(LoginSessionTest, IsHiddenWhileItIsLocked) {
  startLogind();
  make(options());
  follow();
  EXPECT_FALSE(sight_->isHidden());
  logind_->become("ours", true, true);
  EXPECT_TRUE(eventuallyHidden());
  EXPECT_EQ(heard_, 1);
  logind_->become("ours", true, false);
  EXPECT_TRUE(eventuallyHidden(false));
  EXPECT_EQ(heard_, 2);
}

TEST_F(LoginSessionTest, IsHiddenWhileAnotherOneIsShown) {
  startLogind();
  make(options());
  follow();
  logind_->become("ours", false, false);
  EXPECT_TRUE(eventuallyHidden());
  // Which one comes back to is locked for a while.
  logind_->become("ours", true, true);
  const int before = logind_->readings();
  EXPECT_TRUE(eventually([&] { return logind_->readings() > before; }));
  settle();
  EXPECT_TRUE(sight_->isHidden());
  EXPECT_EQ(heard_, 1);
  logind_->become("ours", true, false);
  EXPECT_TRUE(eventuallyHidden(false));
}

TEST_F(LoginSessionTest, WhatIsHiddenFromTheBeginningIsTold) {
  startLogind();
  logind_->become("ours", true, true);
  make(options());
  follow();
  EXPECT_TRUE(eventuallyHidden());
  EXPECT_EQ(heard_, 1);
}

TEST_F(LoginSessionTest, NobodyIsAskedBeforeItIsToBeFollowed) {
  startLogind();
  make(options());
  actor_.advance(std::chrono::seconds(5));
  settle();
  sight_->follow();
  actor_.advance(std::chrono::milliseconds(900));
  settle();
  EXPECT_EQ(logind_->calls(), Calls());
  follow();
  EXPECT_EQ(logind_->calls(), Calls{"GetSession"});
}

TEST_F(LoginSessionTest, IsFoundByTheProcessWhereTheIdIsOfOneThatIsOver) {
  startLogind({.id = "another", .byId = "none", .byProcess = "ours"});
  logind_->addSession("ours", {});
  make(options());
  follow();
  EXPECT_EQ(logind_->calls(), (Calls{"GetSession", "GetSessionByPID"}));
  EXPECT_TRUE(isFollowed("ours"));
}

TEST_F(LoginSessionTest, IsFoundByTheUserWhereTheProcessIsOfNone) {
  startLogind({.byUser = "ours"});
  logind_->addSession("ours", {});
  auto without = options();
  without.sessionId.clear();
  make(without);
  follow();
  EXPECT_EQ(logind_->calls(), (Calls{"GetSessionByPID", "Display"}));
  EXPECT_TRUE(isFollowed("ours"));
}

// The service that runs programs for a user has a session of its own, and so has a text console.
TEST_F(LoginSessionTest, OneWithoutADisplayIsPassedOver) {
  startLogind({.byId = "service", .byProcess = "console", .byUser = "ours"});
  logind_->addSession("service", {.type = "unspecified", .display = "", .isActive = false});
  logind_->addSession("console", {.type = "tty", .display = "", .isActive = false});
  logind_->addSession("ours", {});
  make(options());
  follow(3);
  EXPECT_TRUE(isFollowed("ours"));
  EXPECT_EQ(heard_, 2);
}

struct Ownership {
  const char* what;
  Session session;
  bool isOnWayland;
  bool isOurs;
};

class LoginSessionOwnership : public LoginSessionTest,
                              public testing::WithParamInterface<Ownership> {};

INSTANTIATE_TEST_SUITE_P(
    Table, LoginSessionOwnership,
    testing::Values(Ownership{"OurDisplay", {.display = ":7"}, false, true},
                    Ownership{"AScreenOfIt", {.display = ":7.0"}, false, true},
                    Ownership{"DisplayIsNotTold", {.display = ""}, false, true},
                    Ownership{"AnotherDisplay", {.display = ":77"}, false, false},
                    Ownership{"Xwayland", {.type = "wayland", .display = ""}, true, true},
                    Ownership{
                        "XServerBesideWayland", {.type = "wayland", .display = ""}, false, false}),
    [](const auto& tested) { return tested.param.what; });

TEST_P(LoginSessionOwnership, IsToldByTypeAndDisplay) {
  const auto& tested = GetParam();
  startLogind({.byId = "it"});
  logind_->addSession("it", tested.session);
  logind_->become("it", true, true);
  auto where = options();
  where.isOnWayland = tested.isOnWayland;
  make(where);
  follow();
  // Where it is not ours, the others are asked for.
  EXPECT_TRUE(
      eventually([&] { return sight_->isHidden() || logind_->calls().back() == "Display"; }));
  settle();
  EXPECT_EQ(sight_->isHidden(), tested.isOurs);
}

TEST_F(LoginSessionTest, OfNobodyNothingIsKnown) {
  startLogind(Answers{});
  make(options());
  follow(0);
  EXPECT_TRUE(eventually([&] { return logind_->calls().size() == 3; }));
  settle();
  EXPECT_FALSE(sight_->isHidden());
  EXPECT_EQ(heard_, 0);
}

TEST_F(LoginSessionTest, LogindMayComeLateAndBeReplaced) {
  make(options());
  follow(0);
  settle();
  startLogind();
  EXPECT_TRUE(eventually([&] { return logind_->readings() > 0; }));
  logind_->become("ours", true, true);
  EXPECT_TRUE(eventuallyHidden());
  logind_.reset();
  EXPECT_TRUE(eventuallyHidden(false));
  startLogind();
  logind_->become("ours", false, false);
  EXPECT_TRUE(eventuallyHidden());
}

TEST_F(LoginSessionTest, IsSeenAgainWhenTheBusIsGone) {
  startLogind();
  make(options());
  follow();
  logind_->become("ours", true, true);
  EXPECT_TRUE(eventuallyHidden());
  bus_.stop();
  EXPECT_TRUE(eventuallyHidden(false));
}

TEST_F(LoginSessionTest, WithoutABusNothingIsKnown) {
  for (const auto* address : {"", "nonsense", "unix:path=/nowhere/at/all"}) {
    auto nowhere = options();
    nowhere.systemBus = address;
    make(nowhere);
    follow(0);
    settle();
    actor_.advance(std::chrono::seconds(20));
    settle();
    EXPECT_FALSE(sight_->isHidden()) << address;
  }
  EXPECT_EQ(heard_, 0);
}

TEST_F(LoginSessionTest, MayEndAtAnyTime) {
  startLogind();
  for (int turns = 0; turns < 30; ++turns) {
    make(options());
    sight_->follow();
    actor_.advance(std::chrono::seconds(2));
    for (int turn = 0; turn < turns; ++turn) g_main_context_iteration(nullptr, FALSE);
    changes_ = {};
    sight_.reset();
  }
  settle();
  EXPECT_EQ(heard_, 0);
}

TEST(LoginSessionOptions, ComeFromTheEnvironment) {
  std::map<std::string, std::string> variables{{"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/a"},
                                               {"XDG_SESSION_ID", "c3"},
                                               {"DISPLAY", ":1"},
                                               {"WAYLAND_DISPLAY", "wayland-0"}};
  const auto environment = [&](const std::string& name) -> std::optional<std::string> {
    const auto found = variables.find(name);
    if (found == variables.end()) return std::nullopt;
    return found->second;
  };
  const auto all = loginSessionOptions(environment);
  EXPECT_EQ(all.systemBus, "unix:path=/a");
  EXPECT_EQ(all.sessionId, "c3");
  EXPECT_EQ(all.x11Display, ":1");
  EXPECT_TRUE(all.isOnWayland);
  variables = {{"DBUS_SYSTEM_BUS_ADDRESS", ""}, {"WAYLAND_DISPLAY", ""}};
  const auto none = loginSessionOptions(environment);
  EXPECT_EQ(none.systemBus + none.sessionId + none.x11Display, "");
  EXPECT_FALSE(none.isOnWayland);
}

}  // namespace
}  // namespace orvane::host
