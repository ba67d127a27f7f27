#include <filesystem>
#include <fstream>

#include "../gio/private_bus.h"
#include "linux/application/instance.h"
#include "linux/mainloop/main_loop.h"

namespace orvane::host {
namespace {

namespace fs = std::filesystem;
using gio::eventually;

class LockInstanceTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "orvane-lock-XXXXXX").string();
    folder_ = mkdtemp(pattern.data());
  }
  void TearDown() override { fs::remove_all(folder_); }
  InstanceClaim claim() {
    ApplicationOptions options;
    options.runtimeFolder = folder_;
    options.activate = [this] { ++activations_; };
    return claimInstance(std::move(options), *loop_);
  }

  fs::path folder_;
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

TEST_F(LockInstanceTest, AfterTheFirstEndedAnotherMayRun) {
  auto first = claim();
  first.instance.reset();
  EXPECT_FALSE(fs::exists(folder_ / "orvane.socket"));
  EXPECT_EQ(claim().outcome, InstanceOutcome::first);
}

TEST_F(LockInstanceTest, WhatACrashLeftIsNoHindrance) {
  std::ofstream(folder_ / "orvane.lock") << "old";
  std::ofstream(folder_ / "orvane.socket") << "old";
  const auto first = claim();
  EXPECT_EQ(first.outcome, InstanceOutcome::first);
  EXPECT_EQ(claim().outcome, InstanceOutcome::forwarded);
  EXPECT_TRUE(eventually([&] { return activations_ == 1; }));
}

TEST_F(LockInstanceTest, AFolderThatIsNotThereIsNoReasonNotToRun) {
  fs::remove(folder_);
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
