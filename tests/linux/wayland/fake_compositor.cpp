#include "linux/wayland/fake_compositor.h"

#include <fractional-scale-v1-server.h>
#include <glib.h>
#include <linux/sockios.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <viewporter-server.h>
#include <xdg-output-unstable-v1-server.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <thread>
#include <utility>

namespace orvane::fakes {

class FakeCompositor::Output {
 public:
  OutputTold told;
  wl_global* global = nullptr;
  std::vector<wl_resource*> resources;
  std::vector<wl_resource*> xdgResources;

  void describe() {
    for (wl_resource* it : resources) {
      wl_output_send_geometry(it, told.x, told.y, 0, 0, 0, told.make.c_str(), told.model.c_str(),
                              WL_OUTPUT_TRANSFORM_NORMAL);
      wl_output_send_mode(it, WL_OUTPUT_MODE_CURRENT, told.width, told.height, 60000);
      wl_output_send_scale(it, told.scale);
      wl_output_send_name(it, told.name.c_str());
    }
    for (wl_resource* it : xdgResources) {
      zxdg_output_v1_send_logical_position(it, told.x, told.y);
      zxdg_output_v1_send_logical_size(it, told.width / told.scale, told.height / told.scale);
    }
    for (wl_resource* it : resources) wl_output_send_done(it);
  }
};

// The requests, each as the protocol's C interface wants it.
struct FakeProtocol {
  template <class T>
  static T& of(wl_resource* resource) {
    return *static_cast<T*>(wl_resource_get_user_data(resource));
  }
  static wl_resource* make(wl_client* client, wl_resource* parent, const wl_interface& type,
                           std::uint32_t id, const void* requests, void* data,
                           wl_resource_destroy_func_t gone = nullptr) {
    wl_resource* made = wl_resource_create(client, &type, wl_resource_get_version(parent), id);
    wl_resource_set_implementation(made, requests, data, gone);
    return made;
  }
  static void destroy(wl_client*, wl_resource* resource) { wl_resource_destroy(resource); }

  // ---- wl_region, wl_surface, wl_compositor

  static const struct wl_region_interface* regionRequests() {
    static const struct wl_region_interface requests = {
        destroy,
        [](wl_client*, wl_resource* it, std::int32_t x, std::int32_t y, std::int32_t width,
           std::int32_t height) {
          of<FakeRegion>(it).push_back({x, y, width, height});
        },
        [](wl_client*, wl_resource*, std::int32_t, std::int32_t, std::int32_t, std::int32_t) {}};
    return &requests;
  }

  static struct wl_surface_interface makeSurfaceRequests() {
    struct wl_surface_interface requests {};
    requests.destroy = destroy;
    requests.attach = [](wl_client*, wl_resource* it, wl_resource* buffer, std::int32_t,
                         std::int32_t) { of<FakeSurface>(it).pending_.buffer = buffer; };
    requests.damage = [](wl_client*, wl_resource* it, std::int32_t, std::int32_t, std::int32_t,
                         std::int32_t) {
      of<FakeSurface>(it).compositor_.complain("damage in points");
    };
    requests.frame = [](wl_client* client, wl_resource* it, std::uint32_t id) {
      wl_resource* frame = wl_resource_create(client, &wl_callback_interface, 1, id);
      of<FakeSurface>(it).pending_.frames.push_back(frame);
    };
    requests.set_opaque_region = [](wl_client*, wl_resource*, wl_resource*) {};
    requests.set_input_region = [](wl_client*, wl_resource* it, wl_resource* region) {
      of<FakeSurface>(it).takesPointer = !region || !of<FakeRegion>(region).empty();
    };
    requests.commit = [](wl_client*, wl_resource* it) { of<FakeSurface>(it).commit(); };
    requests.set_buffer_transform = [](wl_client*, wl_resource*, std::int32_t) {};
    requests.set_buffer_scale = [](wl_client*, wl_resource* it, std::int32_t scale) {
      of<FakeSurface>(it).state_.bufferScale = scale;
    };
    requests.damage_buffer = [](wl_client*, wl_resource* it, std::int32_t x, std::int32_t y,
                                std::int32_t width, std::int32_t height) {
      of<FakeSurface>(it).pending_.changed.push_back({x, y, width, height});
    };
    return requests;
  }

  static void surfaceGone(wl_resource* resource) {
    auto& surface = of<FakeSurface>(resource);
    surface.isGone = true;
    surface.frames_.clear();
    if (surface.compositor_.releasesOfGone) surface.releaseBuffers();
    surface.held_.clear();
    // With the connection everything ends, in any order.
    const bool ordered = surface.layerSurface_ == nullptr || !surface.compositor_.client_;
    if (!ordered) surface.compositor_.complain("a surface ended before its role");
  }

  static void createSurface(wl_client* client, wl_resource* parent, std::uint32_t id) {
    static const auto requests = makeSurfaceRequests();
    auto& compositor = of<FakeCompositor>(parent);
    wl_resource* made = make(client, parent, wl_surface_interface, id, &requests, nullptr);
    auto surface = std::make_unique<FakeSurface>(compositor, made);
    wl_resource_set_implementation(made, &requests, surface.get(), surfaceGone);
    compositor.surfaces_.push_back(std::move(surface));
  }

  static void createRegion(wl_client* client, wl_resource* parent, std::uint32_t id) {
    make(client, parent, wl_region_interface, id, regionRequests(), new FakeRegion,
         [](wl_resource* it) { delete &of<FakeRegion>(it); });
  }

  // ---- Layer shell

  static const struct zwlr_layer_surface_v1_interface* layerRequests() {
    static const struct zwlr_layer_surface_v1_interface requests = {
        [](wl_client*, wl_resource* it, std::uint32_t width, std::uint32_t height) {
          of<FakeSurface>(it).width = width;
          of<FakeSurface>(it).height = height;
        },
        [](wl_client*, wl_resource* it, std::uint32_t anchor) {
          of<FakeSurface>(it).anchor = anchor;
        },
        [](wl_client*, wl_resource* it, std::int32_t zone) {
          of<FakeSurface>(it).exclusiveZone = zone;
        },
        [](wl_client*, wl_resource* it, std::int32_t top, std::int32_t, std::int32_t,
           std::int32_t left) {
          of<FakeSurface>(it).state_.marginTop = top;
          of<FakeSurface>(it).state_.marginLeft = left;
        },
        [](wl_client*, wl_resource* it, std::uint32_t keyboard) {
          of<FakeSurface>(it).keyboard = keyboard;
        },
        [](wl_client*, wl_resource*, wl_resource*) {},
        [](wl_client*, wl_resource* it, std::uint32_t) {
          of<FakeSurface>(it).acknowledged_ = true;
        },
        destroy,
        [](wl_client*, wl_resource* it, std::uint32_t layer) { of<FakeSurface>(it).layer = layer; },
    };
    return &requests;
  }

  static void getLayerSurface(wl_client* client, wl_resource* shell, std::uint32_t id,
                              wl_resource* surface, wl_resource* output, std::uint32_t layer,
                              const char* nameSpace) {
    auto& fake = of<FakeSurface>(surface);
    fake.layer = layer;
    fake.output = output;
    fake.nameSpace = nameSpace;
    fake.layerSurface_ =
        make(client, shell, zwlr_layer_surface_v1_interface, id, layerRequests(), &fake,
             [](wl_resource* it) { of<FakeSurface>(it).layerSurface_ = nullptr; });
  }

  // ---- Scale

  static const struct wp_viewport_interface* viewportRequests() {
    static const struct wp_viewport_interface requests = {
        destroy, [](wl_client*, wl_resource*, wl_fixed_t, wl_fixed_t, wl_fixed_t, wl_fixed_t) {},
        [](wl_client*, wl_resource* it, std::int32_t width, std::int32_t height) {
          of<FakeSurface>(it).state_.viewWidth = width;
          of<FakeSurface>(it).state_.viewHeight = height;
        }};
    return &requests;
  }

  static const struct wp_viewporter_interface* viewporterRequests() {
    static const struct wp_viewporter_interface requests = {
        destroy,
        [](wl_client* client, wl_resource* parent, std::uint32_t id, wl_resource* surface) {
          make(client, parent, wp_viewport_interface, id, viewportRequests(),
               &of<FakeSurface>(surface));
        }};
    return &requests;
  }

  static const struct wp_fractional_scale_manager_v1_interface* scaleRequests() {
    static const struct wp_fractional_scale_v1_interface own = {destroy};
    static const struct wp_fractional_scale_manager_v1_interface requests = {
        destroy,
        [](wl_client* client, wl_resource* parent, std::uint32_t id, wl_resource* surface) {
          auto& fake = of<FakeSurface>(surface);
          fake.fractionalScale_ =
              make(client, parent, wp_fractional_scale_v1_interface, id, &own, &fake);
        }};
    return &requests;
  }

  // ---- Outputs

  static void bindOutput(wl_client* client, void* data, std::uint32_t version, std::uint32_t id) {
    static const struct wl_output_interface requests = {destroy};
    auto& output = *static_cast<FakeCompositor::Output*>(data);
    wl_resource* made =
        wl_resource_create(client, &wl_output_interface, static_cast<int>(version), id);
    wl_resource_set_implementation(made, &requests, &output, [](wl_resource* it) {
      std::erase(of<FakeCompositor::Output>(it).resources, it);
    });
    output.resources.push_back(made);
    output.describe();
  }

  static const struct zxdg_output_manager_v1_interface* xdgRequests() {
    static const struct zxdg_output_v1_interface own = {destroy};
    static const struct zxdg_output_manager_v1_interface requests = {
        destroy, [](wl_client* client, wl_resource* parent, std::uint32_t id, wl_resource* it) {
          auto& output = of<FakeCompositor::Output>(it);
          output.xdgResources.push_back(make(
              client, parent, zxdg_output_v1_interface, id, &own, &output,
              [](wl_resource* r) { std::erase(of<FakeCompositor::Output>(r).xdgResources, r); }));
          output.describe();
        }};
    return &requests;
  }
};

namespace {

template <const wl_interface& type, class Requests, const Requests* (*requests)()>
void offerGlobal(wl_display* display, int version, void* compositor) {
  wl_global_create(display, &type, version, compositor,
                   [](wl_client* client, void* data, std::uint32_t bound, std::uint32_t id) {
                     wl_resource* made =
                         wl_resource_create(client, &type, static_cast<int>(bound), id);
                     wl_resource_set_implementation(made, requests(), data, nullptr);
                   });
}

const struct wl_compositor_interface* compositorRequests() {
  static const struct wl_compositor_interface requests = {FakeProtocol::createSurface,
                                                          FakeProtocol::createRegion};
  return &requests;
}

const struct zwlr_layer_shell_v1_interface* shellRequests() {
  static const struct zwlr_layer_shell_v1_interface requests = {FakeProtocol::getLayerSurface,
                                                                FakeProtocol::destroy};
  return &requests;
}

}  // namespace

FakeCompositor::FakeCompositor(Offers offers) : display_(wl_display_create()) {
  offers.byName ? listen() : handOver();
  offer(offers);
}

FakeCompositor::~FakeCompositor() {
  wl_display_destroy_clients(display_);
  wl_display_destroy(display_);
  unsetenv("WAYLAND_SOCKET");
  if (folder_.empty()) return;
  unsetenv("WAYLAND_DISPLAY");
  std::filesystem::remove_all(folder_);
}

void FakeCompositor::handOver() {
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
    throw std::runtime_error("no sockets");
  }
  client_ = wl_client_create(display_, ends[0]);
  setenv("WAYLAND_SOCKET", std::to_string(ends[1]).c_str(), 1);
}

void FakeCompositor::listen() {
  std::string pattern = (std::filesystem::temp_directory_path() / "orvane-display-XXXXXX").string();
  if (!mkdtemp(pattern.data())) throw std::runtime_error("no folder");
  folder_ = pattern;
  const std::string path = folder_ + "/display";
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
      ::listen(fd, 8) != 0 || wl_display_add_socket_fd(display_, fd) != 0) {
    throw std::runtime_error("no display");
  }
  setenv("WAYLAND_DISPLAY", path.c_str(), 1);
  first_.owner = this;
  first_.listener.notify = [](wl_listener* listener, void* client) {
    auto& owner = *reinterpret_cast<FirstClient*>(listener)->owner;
    if (!owner.client_) owner.client_ = static_cast<wl_client*>(client);
  };
  wl_display_add_client_created_listener(display_, &first_.listener);
}

bool FakeCompositor::hasUnreadAnswers() const {
  int bytes = 0;
  return ioctl(wl_client_get_fd(client_), SIOCOUTQ, &bytes) == 0 && bytes > 0;
}

int FakeCompositor::countBuffers() const {
  int count = 0;
  const auto look = [](wl_resource* resource, void* sum) {
    if (std::strcmp(wl_resource_get_class(resource), "wl_buffer") == 0) ++*static_cast<int*>(sum);
    return WL_ITERATOR_CONTINUE;
  };
  wl_client_for_each_resource(client_, look, &count);
  return count;
}

void FakeCompositor::offer(const Offers& offers) {
  wl_display_init_shm(display_);
  offerGlobal<wl_compositor_interface, struct wl_compositor_interface, compositorRequests>(display_,
                                                                                           4, this);
  if (offers.layerShell) {
    offerGlobal<zwlr_layer_shell_v1_interface, struct zwlr_layer_shell_v1_interface, shellRequests>(
        display_, 4, this);
  }
  if (offers.fractionalScale) {
    offerGlobal<wp_viewporter_interface, struct wp_viewporter_interface,
                FakeProtocol::viewporterRequests>(display_, 1, this);
    offerGlobal<wp_fractional_scale_manager_v1_interface,
                struct wp_fractional_scale_manager_v1_interface, FakeProtocol::scaleRequests>(
        display_, 1, this);
  }
  if (offers.xdgOutput) {
    offerGlobal<zxdg_output_manager_v1_interface, struct zxdg_output_manager_v1_interface,
                FakeProtocol::xdgRequests>(display_, 3, this);
  }
}

void FakeCompositor::serveDuring(const std::function<void()>& connect) {
  std::atomic<bool> done = false;
  std::thread server([&] {
    while (!done) {
      wl_event_loop_dispatch(wl_display_get_event_loop(display_), 5);
      wl_display_flush_clients(display_);
    }
  });
  connect();
  done = true;
  server.join();
  settle();
}

void FakeCompositor::settle() {
  // More rounds than any exchange of the tests takes: ask, answer, present, show.
  for (int round = 0; round < 6; ++round) {
    while (g_main_context_iteration(nullptr, FALSE) != 0) {
    }
    wl_event_loop_dispatch(wl_display_get_event_loop(display_), 0);
    wl_display_flush_clients(display_);
  }
}

FakeCompositor::Output& FakeCompositor::addOutput(OutputTold told) {
  outputs_.push_back(std::make_unique<Output>());
  Output& output = *outputs_.back();
  output.told = std::move(told);
  output.global =
      wl_global_create(display_, &wl_output_interface, 4, &output, FakeProtocol::bindOutput);
  return output;
}

void FakeCompositor::changeOutput(Output& output, OutputTold told) {
  output.told = std::move(told);
  output.describe();
}

void FakeCompositor::removeOutput(Output& output) {
  // The resources live on, unused, until the client gives them back.
  wl_global_destroy(std::exchange(output.global, nullptr));
}

void FakeCompositor::breakConnection() { wl_client_destroy(std::exchange(client_, nullptr)); }

void FakeCompositor::breakFurtherConnections() {
  std::vector<wl_client*> further;
  wl_list* all = wl_display_get_client_list(display_);
  for (wl_list* link = all->next; link != all; link = link->next) {
    if (wl_client_from_link(link) != client_) further.push_back(wl_client_from_link(link));
  }
  for (wl_client* client : further) wl_client_destroy(client);
}

void FakeCompositor::postError(const std::string& message) {
  wl_resource_post_error(surface().surface_, 7, "%s", message.c_str());
}

std::vector<FakeSurface*> FakeCompositor::surfaces() const {
  std::vector<FakeSurface*> all;
  for (const auto& surface : surfaces_) all.push_back(surface.get());
  return all;
}

}  // namespace orvane::fakes
