// A neighbour of the board on a Wayland desktop: one surface of one colour, either the desktop's
// background (`sway_client background OUTPUT RRGGBB`, or `stripes`, every other eight pixels of
// which are black) or an ordinary window (`sway_client window TITLE RRGGBB`, or `maximized`, or
// `film`, which is maximized and drawn anew in every frame). It prints "ready" when it is on the
// screen and a line for each event of pointer and keyboard that reaches it, and runs until it is
// told to end. With it comes a pointer, which a display server without devices lacks.
#include <linux/input-event-codes.h>
#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>
#include <wlr-layer-shell-unstable-v1-client.h>
#include <wlr-virtual-pointer-unstable-v1-client.h>
#include <xdg-shell-client.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

namespace {

struct WindowSize {
  int width = 640;
  int height = 480;
};

struct Client {
  wl_display* display = nullptr;
  wl_compositor* compositor = nullptr;
  wl_shm* shm = nullptr;
  wl_seat* seat = nullptr;
  wl_pointer* pointer = nullptr;
  wl_keyboard* keyboard = nullptr;
  zwlr_virtual_pointer_manager_v1* pointerMaker = nullptr;
  zwlr_layer_shell_v1* layerShell = nullptr;
  xdg_wm_base* shell = nullptr;
  std::map<wl_output*, std::string> outputs;
  wl_surface* surface = nullptr;
  std::uint32_t color = 0;
  WindowSize windowSize;
  bool shown = false;
  bool striped = false;
  bool moving = false;
};

Client& of(void* it) { return *static_cast<Client*>(it); }

[[noreturn]] void fail(const char* reason) {
  std::fprintf(stderr, "sway_client: %s\n", reason);
  std::exit(1);
}

template <class Object>
Object* bind(wl_registry* registry, std::uint32_t name, const wl_interface& type,
             std::uint32_t version) {
  return static_cast<Object*>(wl_registry_bind(registry, name, &type, version));
}

// ---- Pointer

// Set member by member: newer protocol headers add members, for events that are not asked for.
wl_pointer_listener makePointerListener() {
  wl_pointer_listener listener{};
  listener.enter = [](void*, wl_pointer* pointer, std::uint32_t serial, wl_surface*, wl_fixed_t x,
                      wl_fixed_t y) {
    // Unseen, so that it is in no screenshot.
    wl_pointer_set_cursor(pointer, serial, nullptr, 0, 0);
    std::printf("enter %d %d\n", wl_fixed_to_int(x), wl_fixed_to_int(y));
  };
  listener.leave = [](void*, wl_pointer*, std::uint32_t, wl_surface*) { std::puts("leave"); };
  listener.motion = [](void*, wl_pointer*, std::uint32_t, wl_fixed_t x, wl_fixed_t y) {
    std::printf("motion %d %d\n", wl_fixed_to_int(x), wl_fixed_to_int(y));
  };
  listener.button = [](void*, wl_pointer*, std::uint32_t, std::uint32_t, std::uint32_t button,
                       std::uint32_t state) {
    const auto* const what = state == WL_POINTER_BUTTON_STATE_PRESSED ? "pressed" : "released";
    std::printf("%s%s\n", what, button == BTN_LEFT ? "" : ", another button");
  };
  listener.axis = [](void*, wl_pointer*, std::uint32_t, std::uint32_t, wl_fixed_t) {};
  return listener;
}

void listenToPointer(Client& client) {
  static const wl_pointer_listener listener = makePointerListener();
  client.pointer = wl_seat_get_pointer(client.seat);
  wl_pointer_add_listener(client.pointer, &listener, &client);
}

// ---- Keyboard

const wl_keyboard_listener keyboardListener = {
    [](void*, wl_keyboard*, std::uint32_t, std::int32_t keymap, std::uint32_t) { close(keymap); },
    [](void*, wl_keyboard*, std::uint32_t, wl_surface*, wl_array*) { std::puts("focused"); },
    [](void*, wl_keyboard*, std::uint32_t, wl_surface*) { std::puts("unfocused"); },
    [](void*, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t state) {
      if (state == WL_KEYBOARD_KEY_STATE_PRESSED) std::puts("key");
    },
    [](void*, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t,
       std::uint32_t) {},
    [](void*, wl_keyboard*, std::int32_t, std::int32_t) {},
};

void listenToKeyboard(Client& client) {
  client.keyboard = wl_seat_get_keyboard(client.seat);
  wl_keyboard_add_listener(client.keyboard, &keyboardListener, &client);
}

const wl_seat_listener seatListener = {
    [](void* it, wl_seat*, std::uint32_t capabilities) {
      Client& client = of(it);
      const bool offered = (capabilities & WL_SEAT_CAPABILITY_POINTER) != 0;
      if (offered && !client.pointer) listenToPointer(client);
      if (!offered && client.pointer) {
        wl_pointer_destroy(client.pointer);
        client.pointer = nullptr;
      }
      const bool types = (capabilities & WL_SEAT_CAPABILITY_KEYBOARD) != 0;
      if (types && !client.keyboard) listenToKeyboard(client);
    },
    [](void*, wl_seat*, const char*) {},
};

// ---- Globals

const wl_output_listener outputListener = {
    [](void*, wl_output*, std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t,
       const char*, const char*, std::int32_t) {},
    [](void*, wl_output*, std::uint32_t, std::int32_t, std::int32_t, std::int32_t) {},
    [](void*, wl_output*) {},
    [](void*, wl_output*, std::int32_t) {},
    [](void* it, wl_output* output, const char* name) { of(it).outputs[output] = name; },
    [](void*, wl_output*, const char*) {},
};

const xdg_wm_base_listener shellListener = {
    [](void*, xdg_wm_base* shell, std::uint32_t serial) { xdg_wm_base_pong(shell, serial); }};

void announced(Client& client, wl_registry* registry, std::uint32_t name,
               const std::string& interface) {
  if (interface == "wl_compositor") {
    client.compositor = bind<wl_compositor>(registry, name, wl_compositor_interface, 4);
  } else if (interface == "wl_shm") {
    client.shm = bind<wl_shm>(registry, name, wl_shm_interface, 1);
  } else if (interface == "zwlr_layer_shell_v1") {
    client.layerShell = bind<zwlr_layer_shell_v1>(registry, name, zwlr_layer_shell_v1_interface, 1);
  } else if (interface == "xdg_wm_base") {
    client.shell = bind<xdg_wm_base>(registry, name, xdg_wm_base_interface, 1);
    xdg_wm_base_add_listener(client.shell, &shellListener, &client);
  } else if (interface == "wl_seat" && !client.seat) {
    client.seat = bind<wl_seat>(registry, name, wl_seat_interface, 1);
    wl_seat_add_listener(client.seat, &seatListener, &client);
  } else if (interface == "zwlr_virtual_pointer_manager_v1") {
    client.pointerMaker = bind<zwlr_virtual_pointer_manager_v1>(
        registry, name, zwlr_virtual_pointer_manager_v1_interface, 1);
  } else if (interface == "wl_output") {
    auto* output = bind<wl_output>(registry, name, wl_output_interface, 4);
    client.outputs[output] = "";
    wl_output_add_listener(output, &outputListener, &client);
  }
}

const wl_registry_listener registryListener = {
    [](void* it, wl_registry* registry, std::uint32_t name, const char* interface, std::uint32_t) {
      announced(of(it), registry, name, interface);
    },
    [](void*, wl_registry*, std::uint32_t) {},
};

// ---- The surface

wl_buffer* makeBuffer(const Client& client, int width, int height) {
  const int bytes = width * height * 4;
  const int fd = memfd_create("neighbour", MFD_CLOEXEC);
  if (fd < 0 || ftruncate(fd, bytes) != 0) fail("no memory");
  void* memory =
      mmap(nullptr, static_cast<std::size_t>(bytes), PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
  if (memory == MAP_FAILED) fail("no memory");
  auto* pixels = static_cast<std::uint32_t*>(memory);
  for (int i = 0; i < width * height; ++i) {
    const bool black = client.striped && i % width / 8 % 2 == 1;
    pixels[i] = black ? 0xff000000U : client.color;
  }
  wl_shm_pool* pool = wl_shm_create_pool(client.shm, fd, bytes);
  wl_buffer* buffer =
      wl_shm_pool_create_buffer(pool, 0, width, height, 4 * width, WL_SHM_FORMAT_XRGB8888);
  wl_shm_pool_destroy(pool);
  munmap(memory, static_cast<std::size_t>(bytes));
  close(fd);
  return buffer;
}

void drawEveryFrame(Client& client) {
  static const wl_callback_listener listener = {[](void* it, wl_callback* frame, std::uint32_t) {
    wl_callback_destroy(frame);
    drawEveryFrame(of(it));
  }};
  wl_callback_add_listener(wl_surface_frame(client.surface), &listener, &client);
  wl_surface_damage(client.surface, 0, 0, client.windowSize.width, client.windowSize.height);
  wl_surface_commit(client.surface);
}

void show(Client& client, int width, int height) {
  wl_buffer* buffer = makeBuffer(client, width, height);
  wl_surface_attach(client.surface, buffer, 0, 0);
  wl_surface_damage(client.surface, 0, 0, width, height);
  wl_surface_commit(client.surface);
  if (!client.shown && client.moving) drawEveryFrame(client);
  if (!client.shown) std::puts("ready");
  client.shown = true;
}

const zwlr_layer_surface_v1_listener layerListener = {
    [](void* it, zwlr_layer_surface_v1* surface, std::uint32_t serial, std::uint32_t width,
       std::uint32_t height) {
      zwlr_layer_surface_v1_ack_configure(surface, serial);
      show(of(it), static_cast<int>(width), static_cast<int>(height));
    },
    [](void*, zwlr_layer_surface_v1*) { std::exit(0); },
};

void becomeBackground(Client& client, const std::string& outputName) {
  wl_output* chosen = nullptr;
  for (const auto& [output, name] : client.outputs) {
    if (name == outputName) chosen = output;
  }
  if (!chosen || !client.layerShell) fail("no such output, or no layer shell");
  auto* surface = zwlr_layer_shell_v1_get_layer_surface(
      client.layerShell, client.surface, chosen, ZWLR_LAYER_SHELL_V1_LAYER_BACKGROUND, "neighbour");
  zwlr_layer_surface_v1_add_listener(surface, &layerListener, &client);
  zwlr_layer_surface_v1_set_anchor(surface, 15);
  zwlr_layer_surface_v1_set_exclusive_zone(surface, -1);
}

xdg_toplevel_listener makeToplevelListener() {
  xdg_toplevel_listener listener{};
  listener.configure = [](void* it, xdg_toplevel*, std::int32_t width, std::int32_t height,
                          wl_array*) {
    if (width > 0 && height > 0) of(it).windowSize = {width, height};
  };
  listener.close = [](void*, xdg_toplevel*) { std::exit(0); };
  return listener;
}

const xdg_surface_listener surfaceListener = {
    [](void* it, xdg_surface* surface, std::uint32_t serial) {
      xdg_surface_ack_configure(surface, serial);
      show(of(it), of(it).windowSize.width, of(it).windowSize.height);
    }};

void becomeWindow(Client& client, const std::string& title, bool maximized) {
  if (!client.shell) fail("no shell for windows");
  auto* surface = xdg_wm_base_get_xdg_surface(client.shell, client.surface);
  xdg_surface_add_listener(surface, &surfaceListener, &client);
  static const xdg_toplevel_listener toplevelListener = makeToplevelListener();
  auto* toplevel = xdg_surface_get_toplevel(surface);
  xdg_toplevel_add_listener(toplevel, &toplevelListener, &client);
  xdg_toplevel_set_title(toplevel, title.c_str());
  xdg_toplevel_set_app_id(toplevel, "neighbour");
  if (maximized) xdg_toplevel_set_maximized(toplevel);
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 4) fail("usage: sway_client background|stripes|window|maximized|film NAME RRGGBB");
  const std::string kind = arguments[1];
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  Client client;
  client.color = 0xff000000U | static_cast<std::uint32_t>(std::strtoul(arguments[3], nullptr, 16));
  client.display = wl_display_connect(nullptr);
  if (!client.display) fail("no display");
  wl_registry* registry = wl_display_get_registry(client.display);
  wl_registry_add_listener(registry, &registryListener, &client);
  wl_display_roundtrip(client.display);
  wl_display_roundtrip(client.display);
  if (!client.compositor || !client.shm) fail("the compositor lacks the basics");
  client.surface = wl_compositor_create_surface(client.compositor);
  if (client.pointerMaker) {
    zwlr_virtual_pointer_manager_v1_create_virtual_pointer(client.pointerMaker, nullptr);
  }
  client.striped = kind == "stripes";
  client.moving = kind == "film";
  if (client.striped || kind == "background") {
    becomeBackground(client, arguments[2]);
  } else {
    becomeWindow(client, arguments[2], kind == "maximized" || client.moving);
  }
  wl_surface_commit(client.surface);
  while (wl_display_dispatch(client.display) >= 0) {
  }
  return 0;
}
