#pragma once

#include <cstdint>
#include <optional>

namespace orvane {

using OSStatus = std::int32_t;
inline constexpr OSStatus noErr = 0;

// Who is told of an event: the application alone, or whoever the system's dispatcher finds.
enum class EventTargetRef { application, dispatcher };

struct EventTypeSpec {
  std::uint32_t eventClass;
  std::uint32_t eventKind;

  friend bool operator==(const EventTypeSpec&, const EventTypeSpec&) = default;
};
inline constexpr EventTypeSpec kHotKeyPressed{0x6B657962, 5};  // class 'keyb'

// Modifier keys of a hot key; a bit mask.
inline constexpr std::uint32_t cmdKey = 0x100;
inline constexpr std::uint32_t shiftKey = 0x200;

struct EventHotKeyID {
  std::uint32_t signature;
  std::uint32_t id;

  friend bool operator==(const EventHotKeyID&, const EventHotKeyID&) = default;
};

// Handles that the host gives out; they mean nothing to anybody else.
enum class EventHandlerRef : std::uintptr_t {};
enum class EventHotKeyRef : std::uintptr_t {};

// Called on the main thread, with the user data that was installed with it.
using EventHandler = OSStatus (*)(void* userData);

// Keys that work wherever the user types. A key that another program holds, or a desktop that has
// no such keys, is an error that nobody needs to look at: the key is then without effect. Main
// thread only.
class EventHotKeys {
 public:
  virtual ~EventHotKeys() = default;

  [[nodiscard]] virtual EventTargetRef applicationEventTarget() const = 0;
  // `userData` is not owned; it must stay until the handler was removed. The handle is left as it
  // is where the installation fails.
  virtual OSStatus installEventHandler(EventTargetRef target, EventHandler handler,
                                       EventTypeSpec type, void* userData,
                                       std::optional<EventHandlerRef>& handlerRef) = 0;
  virtual OSStatus removeEventHandler(EventHandlerRef handlerRef) = 0;
  // `keyCode` is the place of the key on an ANSI keyboard, as a virtual key code.
  virtual OSStatus registerEventHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                       EventHotKeyID id, EventTargetRef target,
                                       std::uint32_t options,
                                       std::optional<EventHotKeyRef>& hotKeyRef) = 0;
  virtual OSStatus unregisterEventHotKey(EventHotKeyRef hotKeyRef) = 0;
};

}  // namespace orvane
