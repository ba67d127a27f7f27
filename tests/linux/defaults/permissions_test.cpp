#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include "fakes/manual_main_actor.h"
#include "linux/defaults/user_defaults.h"
#include "scratch.h"

namespace orvane::host {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using testing::HasSubstr;

// Root is refused nothing, so as root each of these tests runs itself again as an ordinary user, in
// a copy of this program that such a user can reach.
class PermissionsTest : public testing::Test {
 protected:
  void SetUp() override {
    if (geteuid() == 0) becomeOrdinaryUser();
  }
  // Whether this process is to run the test itself.
  static bool isOrdinaryUser() { return geteuid() != 0; }

  static void becomeOrdinaryUser() {
    const Scratch place;
    ::chmod(place.path().c_str(), 0755);
    const auto program = place / "test";
    fs::copy_file("/proc/self/exe", program);
    ::chmod(program.c_str(), 0755);
    const auto* info = testing::UnitTest::GetInstance()->current_test_info();
    const std::string filter =
        std::string("--gtest_filter=") + info->test_suite_name() + "." + info->name();
    const pid_t child = fork();
    if (child == 0) {
      unsetenv("GTEST_OUTPUT");
      execlp("setpriv", "setpriv", "--reuid", "65534", "--regid", "65534", "--clear-groups",
             program.c_str(), filter.c_str(), "--gtest_fail_fast", nullptr);
      _exit(127);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    ASSERT_EQ(WEXITSTATUS(status), 0) << "the test failed as an ordinary user";
  }

  void open() { defaults = makeUserDefaults(scratch / "defaults.json", actor); }
  Scratch scratch;
  fakes::ManualMainActor actor;
  std::unique_ptr<FileUserDefaults> defaults;
};

TEST_F(PermissionsTest, AnUnreadableFileIsKeptAside) {
  if (!isOrdinaryUser()) return;
  scratch.write("defaults.json", R"({"a": true})");
  ::chmod((scratch / "defaults.json").c_str(), 0);
  open();
  EXPECT_EQ(defaults->object("a"), std::nullopt);
  defaults->set("b", true);
  defaults->flush();
  EXPECT_THAT(scratch.read("defaults.json"), HasSubstr("\"b\": true"));
  ::chmod((scratch / "defaults.json.damaged").c_str(), 0600);
  EXPECT_THAT(scratch.read("defaults.json.damaged"), HasSubstr("\"a\": true"));
}

TEST_F(PermissionsTest, AFolderThatCannotBeWrittenIsSurvivedAndTriedAgain) {
  if (!isOrdinaryUser()) return;
  scratch.write("defaults.json", R"({"a": true})");
  ::chmod(scratch.path().c_str(), 0500);
  open();
  testing::internal::CaptureStderr();
  defaults->set("a", false);
  actor.advance(milliseconds(300));
  defaults->set("a", false);
  actor.advance(milliseconds(300));
  const auto said = testing::internal::GetCapturedStderr();
  EXPECT_EQ(std::ranges::count(said, '\n'), 1) << said;
  EXPECT_EQ(defaults->object("a"), DefaultsValue(false));
  EXPECT_THAT(scratch.read("defaults.json"), HasSubstr("true"));
  ::chmod(scratch.path().c_str(), 0700);
  defaults->set("b", true);
  actor.advance(milliseconds(300));
  EXPECT_THAT(scratch.read("defaults.json"), HasSubstr("\"a\": false"));
}

TEST_F(PermissionsTest, ADamagedFileThatCannotBePutAsideIsNeverOverwritten) {
  if (!isOrdinaryUser()) return;
  scratch.write("defaults.json", "precious but damaged");
  ::chmod(scratch.path().c_str(), 0500);
  testing::internal::CaptureStderr();
  open();
  defaults->set("a", true);
  defaults->flush();
  (void)testing::internal::GetCapturedStderr();
  EXPECT_EQ(scratch.read("defaults.json"), "precious but damaged");
  ::chmod(scratch.path().c_str(), 0700);
  defaults->set("a", false);
  defaults->flush();
  EXPECT_EQ(scratch.read("defaults.json.damaged"), "precious but damaged");
  EXPECT_THAT(scratch.read("defaults.json"), HasSubstr("false"));
}

TEST_F(PermissionsTest, AFolderThatCannotBeEnteredIsSurvived) {
  if (!isOrdinaryUser()) return;
  scratch.write("defaults.json", R"({"a": true})");
  ::chmod(scratch.path().c_str(), 0);
  testing::internal::CaptureStderr();
  open();
  defaults->set("b", true);
  defaults->flush();
  const auto said = testing::internal::GetCapturedStderr();
  EXPECT_EQ(defaults->object("b"), DefaultsValue(true));
  EXPECT_NE(said, "");
  ::chmod(scratch.path().c_str(), 0700);
  EXPECT_THAT(scratch.read("defaults.json"), HasSubstr("\"a\""));
}

}  // namespace
}  // namespace orvane::host
