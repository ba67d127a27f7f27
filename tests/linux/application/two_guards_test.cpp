#include <filesystem>

#include "../gio/private_bus.h"
#include "linux/application/instance.h"
#include "linux/mainloop/main_loop.h"
#include "support/scratch_folder.h"

namespace orvane::host {
namespace {

namespace fs = std::filesystem;
using gio::eventually;

// A bus that is too slow for a start is one that the start has no connection to, and an address of.
class TwoGuardsTest : public testing::Test {
 protected:
  void SetUp() override {
    connection_ = bus_.connect();
    ASSERT_TRUE(connection_);
  }
  InstanceClaim claim(GDBusConnection* connection, const std::string& busAddress) {
    ApplicationOptions options;
    options.connection = connection;
    options.busAddress = busAddress;
    options.runtimeFolder = folder_.path();
    options.activate = [this] { ++activations_; };
    return claimInstance(std::move(options), *loop_);
  }
  InstanceClaim claimInTime() { return claim(connection_.get(), bus_.address()); }
  InstanceClaim claimTooSlowly() { return claim(nullptr, bus_.address()); }
  [[nodiscard]] bool isOwned() const {
    return gio::askBus(connection_.get(), "NameHasOwner", "('org.orvane.Orvane',)").text() ==
           "(true,)";
  }

  gio::PrivateBus bus_;
  const ScratchFolder folder_;
  std::unique_ptr<MainLoop> loop_ = makeMainLoop();
  gio::ObjectPtr<GDBusConnection> connection_;
  int activations_ = 0;
};

TEST_F(TwoGuardsTest, AStartThatTheBusIsTooSlowForFindsTheOneWithTheName) {
  const auto first = claimInTime();
  EXPECT_EQ(first.outcome, InstanceOutcome::first);
  EXPECT_EQ(claimTooSlowly().outcome, InstanceOutcome::forwarded);
  EXPECT_TRUE(eventually([&] { return activations_ == 1; }));
}

TEST_F(TwoGuardsTest, AStartWithTheNameFindsTheOneThatTheBusWasTooSlowFor) {
  const auto first = claimTooSlowly();
  EXPECT_EQ(first.outcome, InstanceOutcome::first);
  EXPECT_EQ(claimInTime().outcome, InstanceOutcome::forwarded);
  EXPECT_TRUE(eventually([&] { return activations_ == 1; }));
  EXPECT_TRUE(eventually([&] { return !isOwned(); }));
}

TEST_F(TwoGuardsTest, AStartOnANewBusAtTheSameAddressFindsTheOneOnTheOld) {
  const auto address = bus_.address();
  const auto first = claimInTime();
  bus_.stop();
  const gio::PrivateBus later;
  const auto connection = later.connect();
  ASSERT_TRUE(connection);
  EXPECT_EQ(claim(connection.get(), address).outcome, InstanceOutcome::forwarded);
}

TEST_F(TwoGuardsTest, SessionsWithBusesOfTheirOwnDoNotMeet) {
  const auto first = claimInTime();
  const auto elsewhere = claim(nullptr, "unix:path=/elsewhere/bus");
  EXPECT_EQ(elsewhere.outcome, InstanceOutcome::first);
  const auto withoutAny = claim(nullptr, "");
  EXPECT_EQ(withoutAny.outcome, InstanceOutcome::first);
  EXPECT_EQ(claim(nullptr, "unix:path=/elsewhere/bus").outcome, InstanceOutcome::forwarded);
  EXPECT_EQ(claim(nullptr, "").outcome, InstanceOutcome::forwarded);
}

TEST_F(TwoGuardsTest, AfterTheFirstEndedAnotherMayRun) {
  auto first = claimInTime();
  first.instance.reset();
  EXPECT_TRUE(eventually([&] { return !isOwned(); }));
  EXPECT_EQ(claimTooSlowly().outcome, InstanceOutcome::first);
  EXPECT_EQ(claimInTime().outcome, InstanceOutcome::first);
}

TEST_F(TwoGuardsTest, TheNameDoesWithoutALock) {
  fs::remove(folder_.path());
  testing::internal::CaptureStderr();
  const auto first = claimInTime();
  EXPECT_EQ(first.outcome, InstanceOutcome::first);
  EXPECT_TRUE(isOwned());
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace orvane::host
