#include "focus/focus_hot_key_controller.h"

#include <string>

#include "focus/four_char_code.h"

namespace orvane {

std::shared_ptr<FocusHotKeyController> FocusHotKeyController::create(
    const std::shared_ptr<DashboardSettings>& settings, Environment environment) {
  std::shared_ptr<FocusHotKeyController> controller(
      new FocusHotKeyController(settings, environment));
  controller->registerHotKey();
  controller->followFocusMode();
  return controller;
}

FocusHotKeyController::FocusHotKeyController(const std::shared_ptr<DashboardSettings>& settings,
                                             Environment environment)
    : environment_(environment), settings_(settings) {}

FocusHotKeyController::~FocusHotKeyController() {
  if (hotKeyRef_) environment_.hotKeys.unregisterEventHotKey(*hotKeyRef_);
  if (eventHandler_) environment_.hotKeys.removeEventHandler(*eventHandler_);
}

// A key that cannot be had is simply without effect: focus mode has other switches.
void FocusHotKeyController::registerHotKey() {
  auto& hotKeys = environment_.hotKeys;
  hotKeys.installEventHandler(hotKeys.applicationEventTarget(), &hotKeyPressed, kHotKeyPressed,
                              this, eventHandler_);
  const EventHotKeyID id{fourCharCode("OVFZ"), 1};
  hotKeys.registerEventHotKey(keyCode, modifiers, id, hotKeys.applicationEventTarget(), 0,
                              hotKeyRef_);
}

// The event is answered before anything comes of it.
OSStatus FocusHotKeyController::hotKeyPressed(void* userData) {
  if (!userData) return noErr;
  const auto self = static_cast<FocusHotKeyController*>(userData)->weak_from_this().lock();
  if (self) self->environment_.mainActor.post([self] { self->toggleFocusMode(); });
  return noErr;
}

// The icons follow by the subscription, as for any other change of the setting.
void FocusHotKeyController::toggleFocusMode() const {
  if (const auto settings = settings_.lock()) settings->focusMode = !settings->focusMode.get();
}

void FocusHotKeyController::followFocusMode() {
  const auto settings = settings_.lock();
  if (!settings) return;
  cancellable_ = settings->focusMode.subscribe([weak = weak_from_this()](bool focusModeEnabled) {
    if (const auto self = weak.lock()) self->syncDesktopIcons(focusModeEnabled);
  });
}

// Hiding is asked for anew with every delivery: a desktop that was restarted meanwhile, or refused
// the first time, is reached again that way.
void FocusHotKeyController::syncDesktopIcons(bool focusModeEnabled) {
  const auto settings = settings_.lock();
  if (settings && settings->hideDesktopIconsInFocus && focusModeEnabled) {
    setDesktopIconsHidden(true, environment_.scripts);
    iconsHiddenByApp_ = true;
  } else if (iconsHiddenByApp_) {
    setDesktopIconsHidden(false, environment_.scripts);
    iconsHiddenByApp_ = false;
  }
}

void FocusHotKeyController::setDesktopIconsHidden(bool hidden, AppleScripts& scripts) {
  const std::string source =
      "tell application \"System Events\"\n"
      "    set visible of process \"Finder\" to true\n"
      "end tell\n"
      "do shell script \"defaults write com.apple.finder CreateDesktop -bool " +
      std::string(hidden ? "false" : "true") + "; killall Finder\"";
  if (const auto script = scripts.makeScript(source)) script->executeAndReturnError();
}

}  // namespace orvane
