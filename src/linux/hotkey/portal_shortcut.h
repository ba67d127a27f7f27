#pragma once

#include <memory>
#include <string>

#include "linux/hotkey/hot_key_source.h"

namespace orvane::host::hotkey {

// A shortcut bound through org.freedesktop.portal.GlobalShortcuts, at every start, with every
// portal that comes, and again when the desktop closes the session. The desktop may ask the user,
// give another key, or refuse: all of that is quiet. A portal that is not there is waited for
// unseen. Null without a bus address, or for a key that has no letter.
[[nodiscard]] std::unique_ptr<HotKeySource> makePortalShortcut(const std::string& busAddress,
                                                               Combination combination,
                                                               Pressed pressed);

}  // namespace orvane::host::hotkey
