#include "app/command_line.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

TEST(CommandLine, RunsWithoutArguments) { EXPECT_EQ(answerTo({}, "1.2"), std::nullopt); }

TEST(CommandLine, TellsItsVersion) {
  EXPECT_EQ(answerTo({"--version"}, "1.2"), (CommandLine{"orvane 1.2\n", 0}));
}

TEST(CommandLine, HelpsInThreeLines) {
  const auto answer = answerTo({"--help"}, "1.2");
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->status, 0);
  EXPECT_EQ(answer->text.find("Usage: orvane"), 0u);
}

TEST(CommandLine, RefusesAnythingElseInOneLine) {
  EXPECT_EQ(
      answerTo({"--now"}, "1.2"),
      (CommandLine{"orvane: unknown argument '--now'; only --help and --version are known\n", 2}));
  EXPECT_EQ(
      answerTo({"--help", "x"}, "1.2"),
      (CommandLine{"orvane: unknown argument 'x'; only --help and --version are known\n", 2}));
  EXPECT_EQ(
      answerTo({"a\nb\x1b"}, "1.2"),
      (CommandLine{"orvane: unknown argument 'a?b?'; only --help and --version are known\n", 2}));
}

}  // namespace
}  // namespace orvane
