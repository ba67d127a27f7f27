#include <chrono>
#include <thread>

#include "../gio/private_bus.h"
#include "linux/application/instance.h"
#include "linux/mainloop/main_loop.h"

namespace orvane::host {
namespace {

using gio::eventually;
using Texts = std::vector<std::string>;

class BusInstanceTest : public testing::Test {
 protected:
  void SetUp() override {
    ours_ = bus_.connect();
    other_ = bus_.connect();
    ASSERT_TRUE(ours_);
    ASSERT_TRUE(other_);
  }
  ApplicationOptions options(GDBusConnection* connection) {
    ApplicationOptions options;
    options.connection = connection;
    options.activate = [this] { done_.emplace_back("activate"); };
    options.actions = {{"settings", [this] { done_.emplace_back("settings"); }},
                       {"quit", [this] { done_.emplace_back("quit"); }}};
    return options;
  }
  std::string call(const std::string& method, const std::string& arguments) {
    return gio::ask(other_.get(), "org.orvane.Orvane", "/org/orvane/Orvane",
                    "org.freedesktop.Application", method, arguments)
        .text();
  }
  [[nodiscard]] bool isOwned() const {
    return gio::askBus(other_.get(), "NameHasOwner", "('org.orvane.Orvane',)").text() == "(true,)";
  }

  gio::PrivateBus bus_;
  std::unique_ptr<MainLoop> loop_ = makeMainLoop();
  gio::ObjectPtr<GDBusConnection> ours_;
  gio::ObjectPtr<GDBusConnection> other_;
  Texts done_;
};

TEST_F(BusInstanceTest, TheFirstTakesTheNameAndGivesItBack) {
  auto claim = claimInstance(options(ours_.get()), *loop_);
  EXPECT_EQ(claim.outcome, InstanceOutcome::first);
  EXPECT_TRUE(isOwned());
  claim.instance.reset();
  EXPECT_TRUE(eventually([&] { return !isOwned(); }));
}

TEST_F(BusInstanceTest, ActionsAreCarriedOutInTurns) {
  const auto claim = claimInstance(options(ours_.get()), *loop_);
  EXPECT_EQ(call("Activate", "(@a{sv} {},)"), "()");
  EXPECT_EQ(call("ActivateAction", "('quit', @av [], @a{sv} {})"), "()");
  EXPECT_EQ(call("Open", "(['file:///a'], @a{sv} {})"), "()");
  EXPECT_TRUE(eventually([&] { return done_.size() == 3; }));
  EXPECT_EQ(done_, (Texts{"activate", "quit", "activate"}));
}

TEST_F(BusInstanceTest, TheTokenForTheFocusComesBeforeWhatItIsFor) {
  auto listening = options(ours_.get());
  listening.takeActivationToken = [this](const std::string& token) { done_.push_back(token); };
  const auto claim = claimInstance(std::move(listening), *loop_);
  EXPECT_EQ(call("Activate", "({'activation-token': <'a'>, 'desktop-startup-id': <'b'>},)"), "()");
  EXPECT_EQ(call("ActivateAction", "('settings', @av [], {'desktop-startup-id': <'c'>})"), "()");
  EXPECT_EQ(call("Open", "(@as [], {'activation-token': <'d'>})"), "()");
  EXPECT_EQ(call("Activate", "({'activation-token': <7>},)"), "()");
  EXPECT_TRUE(eventually([&] { return done_.size() == 7; }));
  EXPECT_EQ(done_, (Texts{"a", "activate", "c", "settings", "d", "activate", "activate"}));
}

TEST_F(BusInstanceTest, UnknownActionsAreErrors) {
  const auto claim = claimInstance(options(ours_.get()), *loop_);
  EXPECT_EQ(call("ActivateAction", "('explode', @av [], @a{sv} {})"),
            "org.freedesktop.DBus.Error.InvalidArgs");
  EXPECT_TRUE(done_.empty());
}

TEST_F(BusInstanceTest, TheActivationThatStartedTheProcessIsTheLaunchItself) {
  auto activated = options(ours_.get());
  activated.startedByBus = true;
  const auto claim = claimInstance(std::move(activated), *loop_);
  EXPECT_EQ(call("Activate", "(@a{sv} {},)"), "()");
  EXPECT_EQ(call("Activate", "(@a{sv} {},)"), "()");
  EXPECT_TRUE(eventually([&] { return !done_.empty(); }));
  EXPECT_EQ(done_, Texts{"activate"});
}

TEST_F(BusInstanceTest, AfterAnActionThatStartedTheProcessEveryActivationCounts) {
  auto activated = options(ours_.get());
  activated.startedByBus = true;
  const auto claim = claimInstance(std::move(activated), *loop_);
  EXPECT_EQ(call("ActivateAction", "('settings', @av [], @a{sv} {})"), "()");
  EXPECT_EQ(call("Activate", "(@a{sv} {},)"), "()");
  EXPECT_TRUE(eventually([&] { return done_.size() == 2; }));
  EXPECT_EQ(done_, (Texts{"settings", "activate"}));
}

// The instance of the other process is played by an object that answers on a thread of its own.
TEST_F(BusInstanceTest, ASecondStartActivatesTheFirst) {
  auto listening = options(ours_.get());
  listening.takeActivationToken = [this](const std::string& token) { done_.push_back(token); };
  const auto first = claimInstance(std::move(listening), *loop_);
  auto started = options(other_.get());
  started.activationToken = "token";
  InstanceClaim second;
  std::thread another([&] { second = claimInstance(std::move(started), *loop_); });
  EXPECT_TRUE(eventually([&] { return done_.size() == 2; }));
  another.join();
  EXPECT_EQ(second.outcome, InstanceOutcome::forwarded);
  EXPECT_EQ(second.instance, nullptr);
  EXPECT_EQ(done_, (Texts{"token", "activate"}));
}

// As when the first one waits for its desktop.
TEST_F(BusInstanceTest, ABusyInstanceIsNotWaitedForAndOpensItsSettingsLater) {
  const auto first = claimInstance(options(ours_.get()), *loop_);
  testing::internal::CaptureStderr();
  const auto started = std::chrono::steady_clock::now();
  EXPECT_EQ(claimInstance(options(other_.get()), *loop_).outcome, InstanceOutcome::forwarded);
  EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(4));
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "orvane: Orvane runs already and is busy; its settings open when it is ready.\n");
  EXPECT_TRUE(eventually([&] { return !done_.empty(); }));
  EXPECT_EQ(done_, Texts{"activate"});
}

TEST_F(BusInstanceTest, ASecondStartWithTheSessionAsksForNothing) {
  const auto first = claimInstance(options(ours_.get()), *loop_);
  auto started = options(other_.get());
  started.startedWithSession = true;
  EXPECT_EQ(claimInstance(std::move(started), *loop_).outcome, InstanceOutcome::forwarded);
  // What it had asked for would come before what is asked now.
  EXPECT_EQ(call("ActivateAction", "('quit', @av [], @a{sv} {})"), "()");
  EXPECT_TRUE(eventually([&] { return !done_.empty(); }));
  EXPECT_EQ(done_, Texts{"quit"});
}

TEST_F(BusInstanceTest, NothingIsCalledAfterTheEnd) {
  auto claim = claimInstance(options(ours_.get()), *loop_);
  EXPECT_EQ(call("Activate", "(@a{sv} {},)"), "()");
  done_.clear();
  loop_->post([&] { claim.instance.reset(); });
  EXPECT_TRUE(eventually([&] { return !claim.instance; }));
  EXPECT_TRUE(done_.empty() || done_ == Texts{"activate"});
}

TEST_F(BusInstanceTest, ABusThatIsGoneIsNoReasonNotToRun) {
  bus_.stop();
  EXPECT_TRUE(eventually([&] { return g_dbus_connection_is_closed(ours_.get()) != FALSE; }));
  testing::internal::CaptureStderr();
  const auto claim = claimInstance(options(ours_.get()), *loop_);
  EXPECT_EQ(claim.outcome, InstanceOutcome::first);
  EXPECT_NE(testing::internal::GetCapturedStderr().find("session bus"), std::string::npos);
}

}  // namespace
}  // namespace orvane::host
