// The windows of a Wayland desktop as its panels are told of them: prints a line for each, with its
// title and the name of its application.
#include <wayland-client.h>
#include <wlr-foreign-toplevel-management-unstable-v1-client.h>

#include <cstdint>
#include <cstdio>
#include <list>
#include <string>

namespace {

using Handle = zwlr_foreign_toplevel_handle_v1;

struct Window {
  Handle* handle = nullptr;
  std::string title;
  std::string application;
};

struct Client {
  zwlr_foreign_toplevel_manager_v1* manager = nullptr;
  std::list<Window> windows;
};

const zwlr_foreign_toplevel_handle_v1_listener windowListener = {
    [](void* it, Handle*, const char* title) { static_cast<Window*>(it)->title = title; },
    [](void* it, Handle*, const char* name) { static_cast<Window*>(it)->application = name; },
    [](void*, Handle*, wl_output*) {},
    [](void*, Handle*, wl_output*) {},
    [](void*, Handle*, wl_array*) {},
    [](void*, Handle*) {},
    [](void*, Handle*) {},
};

const zwlr_foreign_toplevel_manager_v1_listener managerListener = {
    [](void* it, zwlr_foreign_toplevel_manager_v1*, Handle* handle) {
      auto& window = static_cast<Client*>(it)->windows.emplace_back();
      window.handle = handle;
      zwlr_foreign_toplevel_handle_v1_add_listener(handle, &windowListener, &window);
    },
    [](void*, zwlr_foreign_toplevel_manager_v1*) {},
};

const wl_registry_listener registryListener = {
    [](void* it, wl_registry* registry, std::uint32_t name, const char* interface, std::uint32_t) {
      if (std::string(interface) != zwlr_foreign_toplevel_manager_v1_interface.name) return;
      auto& client = *static_cast<Client*>(it);
      client.manager = static_cast<zwlr_foreign_toplevel_manager_v1*>(
          wl_registry_bind(registry, name, &zwlr_foreign_toplevel_manager_v1_interface, 1));
      zwlr_foreign_toplevel_manager_v1_add_listener(client.manager, &managerListener, &client);
    },
    [](void*, wl_registry*, std::uint32_t) {},
};

int fail(const char* reason) {
  std::fprintf(stderr, "wlr_windows: %s\n", reason);
  return 1;
}

}  // namespace

int main() {
  wl_display* display = wl_display_connect(nullptr);
  if (!display) return fail("no display");
  Client client;
  wl_registry* registry = wl_display_get_registry(display);
  wl_registry_add_listener(registry, &registryListener, &client);
  // The first answer holds the globals, the second the windows, the third what they are called.
  for (int answer = 0; answer < 3; ++answer) {
    if (wl_display_roundtrip(display) < 0) return fail("the compositor hung up");
    if (!client.manager) return fail("the compositor tells nobody of its windows");
  }
  for (const auto& window : client.windows) {
    std::printf("%s %s\n", window.title.c_str(), window.application.c_str());
    zwlr_foreign_toplevel_handle_v1_destroy(window.handle);
  }
  zwlr_foreign_toplevel_manager_v1_destroy(client.manager);
  wl_registry_destroy(registry);
  wl_display_disconnect(display);
  return 0;
}
