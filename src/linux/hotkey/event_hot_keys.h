// hotkey/ hears of keys wherever the user types: through the desktop portal on Wayland, by a grab
// on X11. Where neither can be had the keys are without effect, and the exported action and the
// settings still do their work.
#pragma once

#include <memory>
#include <string>

#include "foundation/main_actor.h"
#include "platform/event_hot_keys.h"

namespace orvane::host {

struct HotKeyOptions {
  // The session bus, for the portal; empty: not used. The portal gets a connection of its own,
  // since a connection can be registered as one program only once.
  std::string portalBus;
  // The X server whose keys are grabbed; empty: not used. Of use only where X windows have the
  // keyboard: under Xwayland a grab would miss every native window.
  std::string x11Display;
};

// The actor outlives it. Main thread only. Nothing is waited for: keys begin to work when the
// desktop has agreed.
[[nodiscard]] std::unique_ptr<EventHotKeys> makeEventHotKeys(HotKeyOptions options,
                                                             MainActor& mainActor);

}  // namespace orvane::host
