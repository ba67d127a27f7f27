#pragma once

#include <memory>
#include <string>

#include "foundation/main_actor.h"
#include "linux/hotkey/hot_key_source.h"

namespace orvane::host::hotkey {

// A key grab on the root windows of an X server, over a connection of its own: for every state of
// Lock, NumLock and ScrollLock, and anew whenever the keyboard mapping changes. A combination that
// another program holds stays with it, and one line says so. A key that is held down counts once. A
// server that is not there (any more) is tried again from time to time, since the one that comes
// back knows of no grab. Null without a display, or for a key that has no letter.
[[nodiscard]] std::unique_ptr<HotKeySource> makeX11Grab(const std::string& display,
                                                        Combination combination,
                                                        MainActor& mainActor, Pressed pressed);

}  // namespace orvane::host::hotkey
