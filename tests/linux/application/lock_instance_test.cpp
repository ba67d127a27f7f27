#include <filesystem>

#include "../gio/private_bus.h"
#include "linux/application/instance.h"
#include "linux/mainloop/main_loop.h"
#include "support/scratch_folder.h"

namespace orvane::host {
namespace {

namespace fs = std::filesystem;
using gio::eventually;

class LockInstanceTest : public testing::Test {
 protected:
  InstanceClaim claim(bool withSession = false) {
    ApplicationOptions options;
    options.startedWithSession = withSession;
    options.runtimeFolder = folder_.path();
    options.activate = [this] { ++activations_; };
    return claimInstance(std::move(options), *loop_);
  }

  const ScratchFolder folder_;
  std::unique_ptr<MainLoop> loop_ = makeMainLoop();
  int activations_ = 0;
};

TEST_F(LockInstanceTest, ASecondStartActivatesTheFirst) {
  const auto first = claim();
  EXPECT_EQ(first.outcome, InstanceOutcome::first);
  EXPECT_EQ(claim().outcome, InstanceOutcome::forwarded);
  EXPECT_EQ(claim().outcome, InstanceOutcome::forwarded);
  EXPECT_EQ(activations_, 0);
  EXPECT_TRUE(eventually([&] { return activations_ == 2; }));
}

TEST_F(LockInstanceTest, ASecondStartWithTheSessionAsksForNothing) {
  const auto first = claim();
  EXPECT_EQ(claim(true).outcome, InstanceOutcome::forwarded);
  EXPECT_EQ(claim().outcome, InstanceOutcome::forwarded);
  EXPECT_TRUE(eventually([&] { return activations_ > 0; }));
  EXPECT_EQ(activations_, 1);
}

TEST_F(LockInstanceTest, AfterTheFirstEndedAnotherMayRun) {
  auto first = claim();
  first.instance.reset();
  EXPECT_FALSE(fs::exists(folder_ / "orvane" / "session.socket"));
  EXPECT_EQ(claim().outcome, InstanceOutcome::first);
}

TEST_F(LockInstanceTest, WhatACrashLeftIsNoHindrance) {
  folder_.write("orvane/session.lock", "old");
  folder_.write("orvane/session.socket", "old");
  const auto first = claim();
  EXPECT_EQ(first.outcome, InstanceOutcome::first);
  EXPECT_EQ(claim().outcome, InstanceOutcome::forwarded);
  EXPECT_TRUE(eventually([&] { return activations_ == 1; }));
}

TEST_F(LockInstanceTest, AFolderThatIsNotThereIsNoReasonNotToRun) {
  fs::remove(folder_.path());
  testing::internal::CaptureStderr();
  const auto first = claim();
  EXPECT_EQ(first.outcome, InstanceOutcome::first);
  EXPECT_NE(testing::internal::GetCapturedStderr().find("cannot be opened"), std::string::npos);
}

TEST_F(LockInstanceTest, WithoutAFolderThereIsNoGuard) {
  ApplicationOptions options;
  EXPECT_EQ(claimInstance(options, *loop_).outcome, InstanceOutcome::first);
  EXPECT_EQ(claimInstance(options, *loop_).outcome, InstanceOutcome::first);
}

}  // namespace
}  // namespace orvane::host
