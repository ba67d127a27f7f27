#include "linux/settingswindow/window_ending.h"

#include <sys/wait.h>

#include <cerrno>
#include <system_error>

#include "linux/settingswindow/wire/messages.h"

namespace orvane::host {
namespace {

using Cause = WindowEnding::Cause;

std::string sentenceAboutStart(int error) {
  if (error == ENOENT) return "The settings window is not installed.";
  return "The settings window cannot be started: " + std::generic_category().message(error) + ".";
}

std::string sentenceAboutStatus(int status, bool wasShown) {
  if (status == 0 && wasShown) return {};
  if (status == formwire::kExitNoLibrary && !wasShown) {
    return "The settings window needs GTK 4, which is not installed.";
  }
  if (status == formwire::kExitNoDisplay && !wasShown) {
    return "The settings window found no display to show itself on.";
  }
  return "The settings window ended unexpectedly (status " + std::to_string(status) + ").";
}

}  // namespace

WindowEnding endingOf(int waitStatus) {
  if (WIFSIGNALED(waitStatus)) return {Cause::killed, WTERMSIG(waitStatus)};
  return {Cause::exited, WEXITSTATUS(waitStatus)};
}

std::string sentenceAbout(const WindowEnding& ending, bool wasShown) {
  switch (ending.cause) {
    case Cause::notStarted:
      return sentenceAboutStart(ending.number);
    case Cause::exited:
      return sentenceAboutStatus(ending.number, wasShown);
    case Cause::killed:
      return "The settings window ended unexpectedly (signal " + std::to_string(ending.number) +
             ").";
    case Cause::hungUp:
      return "The settings window hung up.";
    case Cause::silent:
      return "The settings window did not answer any more, and was ended.";
    case Cause::nonsense:
      return "The settings window said something that makes no sense, and was ended.";
    case Cause::tooMuch:
      return "There are too many calendars, lists or displays to show the settings.";
  }
  return {};
}

}  // namespace orvane::host
