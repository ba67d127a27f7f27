#include "linux/hotkey/event_hot_keys.h"

#include <map>
#include <utility>
#include <vector>

#include "linux/hotkey/hot_key_source.h"
#include "linux/hotkey/portal_shortcut.h"
#ifdef ORVANE_X11
#include "linux/hotkey/x11_grab.h"
#endif

namespace orvane::host {
namespace {

using hotkey::HotKeySource;

constexpr OSStatus kNoSuchHotKey = -9878;

class HotKeys final : public EventHotKeys {
 public:
  HotKeys(HotKeyOptions options, MainActor& mainActor)
      : options_(std::move(options)), mainActor_(mainActor) {}

  [[nodiscard]] EventTargetRef applicationEventTarget() const override {
    return EventTargetRef::application;
  }

  OSStatus installEventHandler(EventTargetRef, EventHandler handler, EventTypeSpec type,
                               void* userData,
                               std::optional<EventHandlerRef>& handlerRef) override {
    handlerRef = EventHandlerRef{++lastRef_};
    handlers_.emplace(*handlerRef, Handler{handler, type, userData});
    return noErr;
  }
  OSStatus removeEventHandler(EventHandlerRef handlerRef) override {
    return handlers_.erase(handlerRef) == 1 ? noErr : kNoSuchHotKey;
  }

  OSStatus registerEventHotKey(std::uint32_t keyCode, std::uint32_t modifiers, EventHotKeyID,
                               EventTargetRef, std::uint32_t,
                               std::optional<EventHotKeyRef>& hotKeyRef) override {
    hotKeyRef = EventHotKeyRef{++lastRef_};
    hotKeys_.emplace(*hotKeyRef, sourcesFor({keyCode, modifiers}));
    return noErr;
  }
  OSStatus unregisterEventHotKey(EventHotKeyRef hotKeyRef) override {
    return hotKeys_.erase(hotKeyRef) == 1 ? noErr : kNoSuchHotKey;
  }

 private:
  struct Handler {
    EventHandler call;
    EventTypeSpec type;
    void* userData;
  };
  using Sources = std::vector<std::unique_ptr<HotKeySource>>;

  [[nodiscard]] Sources sourcesFor(hotkey::Combination combination) {
    Sources sources;
    const auto add = [&](std::unique_ptr<HotKeySource> source) {
      if (source) sources.push_back(std::move(source));
    };
    const auto pressed = [this] { dispatch(); };
    add(hotkey::makePortalShortcut(options_.portalBus, combination, pressed));
#ifdef ORVANE_X11
    add(hotkey::makeX11Grab(options_.x11Display, combination, mainActor_, pressed));
#endif
    return sources;
  }

  // A handler may take itself away while it is called.
  void dispatch() const {
    const auto handlers = handlers_;
    for (const auto& [ref, handler] : handlers) {
      if (handler.type == kHotKeyPressed && handlers_.contains(ref)) handler.call(handler.userData);
    }
  }

  const HotKeyOptions options_;
  MainActor& mainActor_;
  std::uintptr_t lastRef_ = 0;
  std::map<EventHandlerRef, Handler> handlers_;
  std::map<EventHotKeyRef, Sources> hotKeys_;
};

}  // namespace

std::unique_ptr<EventHotKeys> makeEventHotKeys(HotKeyOptions options, MainActor& mainActor) {
  return std::make_unique<HotKeys>(std::move(options), mainActor);
}

}  // namespace orvane::host
