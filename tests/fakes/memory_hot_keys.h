#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/event_hot_keys.h"

namespace orvane::fakes {

// Hot keys that a test presses; it may be told to refuse them.
class MemoryHotKeys final : public EventHotKeys {
 public:
  struct Handler {
    EventTargetRef target;
    EventHandler call;
    EventTypeSpec type;
    void* userData;
  };
  struct HotKey {
    std::uint32_t keyCode;
    std::uint32_t modifiers;
    EventHotKeyID id;
    EventTargetRef target;
    std::uint32_t options;
  };
  static constexpr OSStatus refusal = -9878;

  explicit MemoryHotKeys(std::vector<std::string>& log) : log_(log) {}

  [[nodiscard]] EventTargetRef applicationEventTarget() const override {
    return EventTargetRef::application;
  }
  OSStatus installEventHandler(EventTargetRef target, EventHandler handler, EventTypeSpec type,
                               void* userData,
                               std::optional<EventHandlerRef>& handlerRef) override {
    log_.emplace_back("install handler");
    if (refuses) return refusal;
    handlerRef = EventHandlerRef{next_++};
    handlers.emplace(*handlerRef, Handler{target, handler, type, userData});
    return noErr;
  }
  OSStatus removeEventHandler(EventHandlerRef handlerRef) override {
    log_.emplace_back("remove handler");
    return handlers.erase(handlerRef) == 1 ? noErr : refusal;
  }
  OSStatus registerEventHotKey(std::uint32_t keyCode, std::uint32_t modifiers, EventHotKeyID id,
                               EventTargetRef target, std::uint32_t options,
                               std::optional<EventHotKeyRef>& hotKeyRef) override {
    log_.emplace_back("register hot key");
    if (refuses) return refusal;
    hotKeyRef = EventHotKeyRef{next_++};
    hotKeys.emplace(*hotKeyRef, HotKey{keyCode, modifiers, id, target, options});
    return noErr;
  }
  OSStatus unregisterEventHotKey(EventHotKeyRef hotKeyRef) override {
    log_.emplace_back("unregister hot key");
    return hotKeys.erase(hotKeyRef) == 1 ? noErr : refusal;
  }

  // What the host does when the user presses the key; answers what the last handler answered.
  OSStatus press() const {
    OSStatus status = refusal;
    if (hotKeys.empty()) return status;
    for (const auto& [ref, handler] : handlers) status = handler.call(handler.userData);
    return status;
  }

  std::map<EventHandlerRef, Handler> handlers;
  std::map<EventHotKeyRef, HotKey> hotKeys;
  bool refuses = false;

 private:
  std::vector<std::string>& log_;
  std::uintptr_t next_ = 1;
};

}  // namespace orvane::fakes
