#pragma once

#include <memory>
#include <vector>

#include "foundation/date.h"
#include "linux/wayland/display_source.h"
#include "linux/wayland/output_watch.h"

namespace orvane::host::wayland {

// What a window needs to hear next from the compositor.
enum class Awaits {
  nothing,
  nextSecond,  // nothing before it draws again at the next second
  anAnswer,    // at once: before that it cannot show what is true
};

class AwaitingWindow {
 public:
  [[nodiscard]] virtual Awaits awaits() const = 0;

 protected:
  ~AwaitingWindow() = default;
};

// A compositor answers every picture: the buffer is free, the frame was shown. Nobody needs to know
// before the next second, when the next picture is drawn; so the answers are left unread until
// then, and a second wakes the program once instead of twice. That rests on somebody else who hears
// of changed outputs meanwhile; without one everything is read at once.
class ReadingRest {
 public:
  // The source outlives it. `mayConnectAgain`: the environment names the compositor of the source.
  ReadingRest(DisplaySource& source, bool mayConnectAgain);

  // The window is removed before it ends.
  void add(const AwaitingWindow& window);
  void remove(const AwaitingWindow& window);

  // Reads again: something is wanted of the compositor.
  void listen() { source_.listen(); }
  // The same, for a second that begins; all windows tell of it.
  void beat(Date second);
  // A batch of events was handled; lets the next ones lie if no window waits for them.
  void restIfNobodyWaits();

 private:
  [[nodiscard]] bool somebodyWaits() const;
  [[nodiscard]] bool somebodyDraws() const;

  DisplaySource& source_;
  bool mayConnectAgain_;
  std::vector<const AwaitingWindow*> windows_;
  std::unique_ptr<OutputWatch> outputs_;
  Date second_;
  int alertSeconds_ = 0;  // after a change of the outputs, until all that follows of it is here
};

}  // namespace orvane::host::wayland
