#include "linux/wayland/connection.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace orvane::host::wayland {
namespace {

// wl_surface.damage_buffer and wl_output.done are what we cannot do without.
constexpr std::uint32_t leastCompositor = WL_SURFACE_DAMAGE_BUFFER_SINCE_VERSION;
constexpr std::uint32_t leastOutput = WL_OUTPUT_DONE_SINCE_VERSION;

// libwayland says here, in words, what rule was broken when a compositor ends the connection.
void printProtocolMessage(const char* format, va_list arguments) {
  std::fputs("orvane: Wayland: ", stderr);
  std::vfprintf(stderr, format, arguments);
}

// Whether the compositor ended the connection for what was asked of it, and said so. Connections
// also end because it ended itself, or has read nothing for so long that no more can be sent.
bool isRuleBroken(wl_display* display) {
  const wl_interface* interface = nullptr;
  std::uint32_t object = 0;
  wl_display_get_protocol_error(display, &interface, &object);
  // An object that is gone by then has no interface to be told.
  return interface || wl_display_get_error(display) == EPROTO;
}

}  // namespace

const wl_registry_listener Connection::registryListener = {
    [](void* it, wl_registry*, std::uint32_t name, const char* interface, std::uint32_t version) {
      static_cast<Connection*>(it)->announced(name, interface, version);
    },
    [](void* it, wl_registry*, std::uint32_t name) {
      static_cast<Connection*>(it)->withdrawn(name);
    },
};

Connection::Connection(Events events)
    : events_(std::move(events)), outputs_([this] { events_.screensChanged(); }) {}

Connection::~Connection() {
  rest_.reset();
  source_.reset();
  if (display_) wl_display_flush(display_.get());
}

std::string Connection::open(const Wait& wait) {
  // Whoever handed us a connection has perhaps none for a second one.
  const bool handedOver = std::getenv("WAYLAND_SOCKET") != nullptr;
  display_.reset(connectToCompositor());
  if (!display_) {
    return std::string("There is no Wayland compositor: ") + std::strerror(errno) + ".";
  }
  wl_log_set_handler_client(printProtocolMessage);
  registry_.reset(wl_display_get_registry(display_.get()));
  wl_registry_add_listener(registry_.get(), &registryListener, this);
  // The first answer holds the globals, the second what the outputs tell of themselves.
  for (int answer = 0; answer < 2; ++answer) {
    if (auto reason = waitForAnswers(display_.get(), wait); !reason.empty()) return reason;
    if (auto reason = missing(); !reason.empty()) return reason;
    bindOutputs();
  }
  source_ = std::make_unique<DisplaySource>(
      display_.get(), DisplaySource::Events{[this] { dispatched(); }, [this] { lose(); }});
  rest_ = std::make_unique<ReadingRest>(*source_, !handedOver);
  return {};
}

std::string Connection::missing() const {
  if (!globals_.compositor || !globals_.shm) return "The Wayland compositor is too old.";
  if (!globals_.layerShell) return "The Wayland compositor has no layer shell.";
  return {};
}

void Connection::announced(std::uint32_t name, const std::string& interface,
                           std::uint32_t version) {
  const auto bind = [&](auto& handle, const wl_interface& type, std::uint32_t newest) {
    if (handle || interface != type.name) return;
    using Object = typename std::remove_reference_t<decltype(handle)>::element_type;
    handle.reset(static_cast<Object*>(
        wl_registry_bind(registry_.get(), name, &type, std::min(version, newest))));
  };
  if (version >= leastCompositor) bind(globals_.compositor, wl_compositor_interface, 4);
  bind(globals_.shm, wl_shm_interface, 1);
  bind(globals_.layerShell, zwlr_layer_shell_v1_interface, 4);
  bind(globals_.viewporter, wp_viewporter_interface, 1);
  bind(globals_.fractionalScales, wp_fractional_scale_manager_v1_interface, 1);
  if (interface == org_kde_kwin_blur_manager_interface.name && !globals_.blurs) {
    bind(globals_.blurs, org_kde_kwin_blur_manager_interface, 1);
    blursName_ = name;
  }
  if (interface == kde_output_order_v1_interface.name && !outputOrder_) bindOutputOrder(name);
  globals_.kwin.announced(interface, version);
  if (globals_.kwin.showsOnePlane()) outputs_.showOnePlane();
  if (interface == zxdg_output_manager_v1_interface.name && !globals_.xdgOutputs) {
    bind(globals_.xdgOutputs, zxdg_output_manager_v1_interface, 3);
    outputs_.describeWith(globals_.xdgOutputs.get());
  }
  if (interface == wl_output_interface.name && version >= leastOutput) {
    unboundOutputs_.push_back({name, version});
  }
}

void Connection::bindOutputOrder(std::uint32_t name) {
  Handle<kde_output_order_v1> order(static_cast<kde_output_order_v1*>(
      wl_registry_bind(registry_.get(), name, &kde_output_order_v1_interface, 1)));
  outputOrder_ = std::make_unique<OutputOrder>(
      std::move(order), [this](auto connectors) { outputs_.setOrder(std::move(connectors)); });
}

void Connection::withdrawn(std::uint32_t name) {
  if (name == blursName_) globals_.blurs.reset();
  std::erase_if(unboundOutputs_, [&](const auto& output) { return output.name == name; });
  outputs_.remove(name);
}

void Connection::dispatched() {
  bindOutputs();
  rest_->restIfNobodyWaits();
}

// Outputs are bound when a batch of events is done, not when they are announced: one that came and
// went within the batch must not be asked for, since some compositors end the connection for it.
void Connection::bindOutputs() {
  for (const auto& [name, version] : std::exchange(unboundOutputs_, {})) {
    Handle<wl_output> output(static_cast<wl_output*>(
        wl_registry_bind(registry_.get(), name, &wl_output_interface, std::min(version, 4U))));
    outputs_.add(std::move(output), name, globals_.xdgOutputs.get());
  }
}

void Connection::lose() {
  lost_ = true;
  outputs_.clear();
  if (isRuleBroken(display_.get())) {
    // Which one was printed already.
    events_.lost({"The Wayland compositor ended the connection", true});
  } else {
    events_.lost({"The connection to the Wayland compositor is lost", false});
  }
}

}  // namespace orvane::host::wayland
