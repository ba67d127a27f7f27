// What a user of a compositor without devices does with a pointer:
//
//   wlr_input move|click X Y WIDTH HEIGHT    in points, in the layout of all outputs, which has
//   this
//                                            size
#include <linux/input-event-codes.h>
#include <wayland-client.h>
#include <wlr-virtual-pointer-unstable-v1-client.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

[[noreturn]] void fail(const char* reason) {
  std::fprintf(stderr, "wlr_input: %s\n", reason);
  std::exit(1);
}

void announced(void* it, wl_registry* registry, std::uint32_t name, const char* interface,
               std::uint32_t) {
  const wl_interface& type = zwlr_virtual_pointer_manager_v1_interface;
  if (interface != std::string(type.name)) return;
  *static_cast<zwlr_virtual_pointer_manager_v1**>(it) =
      static_cast<zwlr_virtual_pointer_manager_v1*>(wl_registry_bind(registry, name, &type, 1));
}

zwlr_virtual_pointer_v1* plugIn(wl_display* display) {
  static const wl_registry_listener listener = {announced,
                                                [](void*, wl_registry*, std::uint32_t) {}};
  zwlr_virtual_pointer_manager_v1* maker = nullptr;
  wl_registry* registry = wl_display_get_registry(display);
  wl_registry_add_listener(registry, &listener, &maker);
  wl_display_roundtrip(display);
  wl_registry_destroy(registry);
  if (!maker) fail("the compositor takes no pointers from programs");
  return zwlr_virtual_pointer_manager_v1_create_virtual_pointer(maker, nullptr);
}

void press(zwlr_virtual_pointer_v1* pointer, std::uint32_t time, wl_pointer_button_state state) {
  zwlr_virtual_pointer_v1_button(pointer, time, BTN_LEFT, state);
  zwlr_virtual_pointer_v1_frame(pointer);
}

std::uint32_t number(const char* text) {
  return static_cast<std::uint32_t>(std::strtoul(text, nullptr, 10));
}

}  // namespace

int main(int count, char** words) {
  const std::string verb = count == 6 ? words[1] : "";
  if (verb != "move" && verb != "click") fail("usage: wlr_input move|click X Y WIDTH HEIGHT");
  wl_display* display = wl_display_connect(nullptr);
  if (!display) fail("no display");
  auto* pointer = plugIn(display);
  // The compositor gives a new pointer its place before it listens to it.
  wl_display_roundtrip(display);
  zwlr_virtual_pointer_v1_motion_absolute(pointer, 0, number(words[2]), number(words[3]),
                                          number(words[4]), number(words[5]));
  zwlr_virtual_pointer_v1_frame(pointer);
  wl_display_roundtrip(display);
  if (verb == "click") {
    press(pointer, 1, WL_POINTER_BUTTON_STATE_PRESSED);
    wl_display_roundtrip(display);
    press(pointer, 2, WL_POINTER_BUTTON_STATE_RELEASED);
  }
  wl_display_roundtrip(display);
  wl_display_disconnect(display);
  return 0;
}
