#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "foundation/main_actor.h"
#include "foundation/subscription.h"
#include "platform/event_hot_keys.h"
#include "platform/ns_apple_script.h"
#include "settings/dashboard_settings.h"

namespace orvane {

// Lets the user turn focus mode on and off from anywhere by a key, and hides and shows the icons of
// the desktop with it where the settings say so. Never keeps the settings alive. Destroying it
// gives the key back and leaves the icons as they are. Main thread only.
class FocusHotKeyController : public std::enable_shared_from_this<FocusHotKeyController> {
 public:
  // All of it must outlive the controller and the turns of the loop.
  struct Environment {
    EventHotKeys& hotKeys;
    AppleScripts& scripts;
    MainActor& mainActor;
  };

  static constexpr std::uint32_t keyCode = 6;  // Z on an ANSI keyboard
  static constexpr std::uint32_t modifiers = cmdKey | shiftKey;

  // Registers the key, and brings the icons in line with the current focus mode.
  [[nodiscard]] static std::shared_ptr<FocusHotKeyController> create(
      const std::shared_ptr<DashboardSettings>& settings, Environment environment);
  FocusHotKeyController(const FocusHotKeyController&) = delete;
  FocusHotKeyController& operator=(const FocusHotKeyController&) = delete;
  ~FocusHotKeyController();

  // What the key does, for other ways to ask for it. Nothing when the settings are gone.
  void toggleFocusMode() const;
  // Whether the icons are hidden because this program asked for it, whatever came of the asking.
  [[nodiscard]] bool iconsHiddenByApp() const { return iconsHiddenByApp_; }

 private:
  FocusHotKeyController(const std::shared_ptr<DashboardSettings>& settings,
                        Environment environment);

  void registerHotKey();
  static OSStatus hotKeyPressed(void* userData);
  void followFocusMode();
  void syncDesktopIcons(bool focusModeEnabled);
  static void setDesktopIconsHidden(bool hidden, AppleScripts& scripts);

  const Environment environment_;
  std::weak_ptr<DashboardSettings> settings_;
  std::optional<EventHotKeyRef> hotKeyRef_;
  std::optional<EventHandlerRef> eventHandler_;
  Subscription cancellable_;
  bool iconsHiddenByApp_ = false;
};

}  // namespace orvane
