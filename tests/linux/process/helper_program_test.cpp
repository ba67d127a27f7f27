#include "linux/process/helper_program.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace orvane::host {
namespace {

// A program that is a script, gone with the test.
class Script {
 public:
  explicit Script(const std::string& lines) {
    std::string name = (std::filesystem::temp_directory_path() / "orvane-helper-XXXXXX").string();
    close(mkstemp(name.data()));
    path_ = name;
    std::ofstream(path_) << "#!/bin/sh\n" << lines;
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all);
  }
  Script(const Script&) = delete;
  ~Script() { std::filesystem::remove(path_); }
  [[nodiscard]] std::string path() const { return path_; }

 private:
  std::filesystem::path path_;
};

// What a script writes until it ends.
std::string outputOf(const std::string& lines, std::vector<std::string> environment = {}) {
  const Script script(lines);
  std::array<int, 2> ends{};
  EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
  const auto started = startHelper({script.path(), {-1, ends[1], -1}, std::move(environment)});
  EXPECT_EQ(started.error, 0);
  close(ends[1]);
  std::string output;
  std::array<char, 256> bytes;
  for (ssize_t count; (count = read(ends[0], bytes.data(), bytes.size())) > 0;) {
    output.append(bytes.data(), static_cast<std::size_t>(count));
  }
  close(ends[0]);
  waitpid(started.process, nullptr, 0);
  return output;
}

TEST(HelperProgram, HoldsTheFilesItWasGivenAndNoOthers) {
  const int leaking = open("/dev/null", O_RDONLY);
  EXPECT_EQ(outputOf("for file in 0 1 2 3 4 5 6 7 8; do\n"
                     "  if (: <&$file) 2>/dev/null; then printf '%s ' $file; fi\n"
                     "done\n"),
            "0 1 2 ");
  close(leaking);
}

TEST(HelperProgram, HasTheEnvironmentItWasGivenAndNoOther) {
  setenv("ORVANE_LEAKING", "yes", 1);
  EXPECT_EQ(outputOf("echo \"$GIVEN $ORVANE_LEAKING\"", {"GIVEN=this"}), "this \n");
  unsetenv("ORVANE_LEAKING");
}

TEST(HelperProgram, IgnoresAndBlocksNoSignal) {
  const auto before = signal(SIGPIPE, SIG_IGN);
  sigset_t blocked, old;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGTERM);
  sigprocmask(SIG_BLOCK, &blocked, &old);
  const std::string masks = outputOf(
      "while read name mask; do case $name in SigBlk:|SigIgn:) echo $mask; esac; done"
      " </proc/$$/status");
  sigprocmask(SIG_SETMASK, &old, nullptr);
  signal(SIGPIPE, before);
  std::istringstream lines(masks);
  int count = 0;
  // The two behind the first 31 are the C library's own.
  for (std::uint64_t mask = 0; lines >> std::hex >> mask; ++count) EXPECT_EQ(mask & 0x7fffffff, 0U);
  EXPECT_EQ(count, 2) << masks;
}

TEST(HelperProgram, ThatCannotBeStartedTellsWhy) {
  EXPECT_EQ(startHelper({"/nowhere/helper", {}, {}}).error, ENOENT);
  EXPECT_EQ(startHelper({"/", {}, {}}).error, EACCES);
}

TEST(HelperProgram, IsEndedWithoutALeftover) {
  const Script script("trap '' TERM\nwhile :; do read line || :; done < /dev/null\n");
  const auto started = startHelper({script.path(), {-1, -1, -1}, {}});
  ASSERT_EQ(started.error, 0);
  EXPECT_EQ(kill(started.process, 0), 0);
  endHelper(started.process);
  EXPECT_EQ(kill(started.process, 0), -1);
}

}  // namespace
}  // namespace orvane::host
