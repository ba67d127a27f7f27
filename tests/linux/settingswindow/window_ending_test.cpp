#include "linux/settingswindow/window_ending.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>

#include "linux/settingswindow/wire/messages.h"

namespace orvane::host {
namespace {

using Cause = WindowEnding::Cause;

TEST(WindowEnding, IsReadFromTheStatus) {
  EXPECT_EQ(endingOf(0), (WindowEnding{Cause::exited, 0}));
  EXPECT_EQ(endingOf(127 << 8), (WindowEnding{Cause::exited, 127}));
  EXPECT_EQ(endingOf(SIGSEGV), (WindowEnding{Cause::killed, SIGSEGV}));
  EXPECT_EQ(endingOf(SIGABRT | 0x80), (WindowEnding{Cause::killed, SIGABRT}));
}

TEST(WindowEnding, IsToldInASentence) {
  struct Case {
    WindowEnding ending;
    bool wasShown;
    const char* sentence;
  };
  const Case cases[] = {
      {{Cause::notStarted, ENOENT}, false, "The settings window is not installed."},
      {{Cause::notStarted, EACCES},
       false,
       "The settings window cannot be started: Permission denied."},
      {{Cause::exited, 0}, true, ""},
      {{Cause::exited, 0}, false, "The settings window ended unexpectedly (status 0)."},
      {{Cause::exited, formwire::kExitNoLibrary},
       false,
       "The settings window needs GTK 4, which is not installed."},
      {{Cause::exited, formwire::kExitNoDisplay},
       false,
       "The settings window found no display to show itself on."},
      {{Cause::exited, formwire::kExitNoDisplay},
       true,
       "The settings window ended unexpectedly (status 69)."},
      {{Cause::killed, SIGSEGV}, true, "The settings window ended unexpectedly (signal 11)."},
      {{Cause::hungUp, 0}, true, "The settings window hung up."},
      {{Cause::silent, 0}, true, "The settings window did not answer any more, and was ended."},
      {{Cause::nonsense, 0},
       true,
       "The settings window said something that makes no sense, and was ended."},
      {{Cause::tooMuch, 0},
       false,
       "There are too many calendars, lists or displays to show the settings."}};
  for (const auto& one : cases) {
    EXPECT_EQ(sentenceAbout(one.ending, one.wasShown), one.sentence);
  }
}

}  // namespace
}  // namespace orvane::host
