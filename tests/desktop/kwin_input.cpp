// What a user of a headless KWin does with pointer and keyboard.
//
//   kwin_input hold              has them plugged in, until it is told to end; prints "ready"
//   kwin_input move X Y          in points, in the layout of all outputs
//   kwin_input click X Y [right]
//   kwin_input key CODE          of linux/input-event-codes.h
#include <kwin-fake-input-client.h>
#include <linux/input-event-codes.h>
#include <wayland-client.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

[[noreturn]] void fail(const char* reason) {
  std::fprintf(stderr, "kwin_input: %s\n", reason);
  std::exit(1);
}

constexpr std::uint32_t pressed = 1;
constexpr std::uint32_t released = 0;

void announced(void* it, wl_registry* registry, std::uint32_t name, const char* interface,
               std::uint32_t version) {
  const wl_interface& type = org_kde_kwin_fake_input_interface;
  if (interface != std::string(type.name) || version < 4) return;
  *static_cast<org_kde_kwin_fake_input**>(it) =
      static_cast<org_kde_kwin_fake_input*>(wl_registry_bind(registry, name, &type, 4));
}

org_kde_kwin_fake_input* plugIn(wl_display* display) {
  static const wl_registry_listener listener = {announced,
                                                [](void*, wl_registry*, std::uint32_t) {}};
  org_kde_kwin_fake_input* input = nullptr;
  wl_registry* registry = wl_display_get_registry(display);
  wl_registry_add_listener(registry, &listener, &input);
  wl_display_roundtrip(display);
  wl_registry_destroy(registry);
  if (!input) fail("the compositor takes no input from programs");
  org_kde_kwin_fake_input_authenticate(input, "kwin_input", "tests");
  return input;
}

void moveTo(org_kde_kwin_fake_input* input, const std::string& x, const std::string& y) {
  org_kde_kwin_fake_input_pointer_motion_absolute(input, wl_fixed_from_double(std::stod(x)),
                                                  wl_fixed_from_double(std::stod(y)));
}

void perform(org_kde_kwin_fake_input* input, const std::vector<std::string>& words) {
  const auto is = [&](const char* verb, std::size_t least) {
    return words.size() >= least && words[0] == verb;
  };
  if (is("move", 3)) {
    moveTo(input, words[1], words[2]);
  } else if (is("click", 3)) {
    const std::uint32_t button = words.back() == "right" ? BTN_RIGHT : BTN_LEFT;
    moveTo(input, words[1], words[2]);
    org_kde_kwin_fake_input_button(input, button, pressed);
    org_kde_kwin_fake_input_button(input, button, released);
  } else if (is("key", 2)) {
    const auto code = static_cast<std::uint32_t>(std::stoul(words[1]));
    org_kde_kwin_fake_input_keyboard_key(input, code, pressed);
    org_kde_kwin_fake_input_keyboard_key(input, code, released);
  } else {
    fail("usage: kwin_input hold | move X Y | click X Y [right] | key CODE");
  }
}

}  // namespace

int main(int count, char** arguments) {
  const std::vector<std::string> words(arguments + std::min(count, 1), arguments + count);
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  wl_display* display = wl_display_connect(nullptr);
  if (!display) fail("no display");
  org_kde_kwin_fake_input* input = plugIn(display);
  const bool holds = words.size() == 1 && words[0] == "hold";
  if (!holds) perform(input, words);
  wl_display_roundtrip(display);
  if (holds) {
    std::puts("ready");
    while (wl_display_dispatch(display) >= 0) {
    }
  }
  org_kde_kwin_fake_input_destroy(input);
  wl_display_disconnect(display);
  return 0;
}
