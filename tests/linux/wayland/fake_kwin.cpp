#include "linux/wayland/fake_kwin.h"

#include <kde-output-order-v1-server.h>
#include <kwin-blur-server.h>

#include <utility>

namespace orvane::fakes {
namespace {

template <class T>
T& of(wl_resource* resource) {
  return *static_cast<T*>(wl_resource_get_user_data(resource));
}

// Interfaces that are looked at and never bound.
const wl_interface plasmaShell{"org_kde_plasma_shell", 8, 0, nullptr, 0, nullptr};
const wl_interface outputManagementInterface{
    "kde_output_management_v2", 99, 0, nullptr, 0, nullptr};

void neverBound(wl_client* client, void*, std::uint32_t, std::uint32_t) {
  wl_client_post_implementation_error(client, "this interface is not spoken");
}

}  // namespace

struct FakeKWin::Requests {
  static void destroy(wl_client*, wl_resource* it) { wl_resource_destroy(it); }

  static void bindOrder(wl_client* client, void* data, std::uint32_t version, std::uint32_t id) {
    static const struct kde_output_order_v1_interface requests = {destroy};
    auto& self = *static_cast<FakeKWin*>(data);
    wl_resource* made =
        wl_resource_create(client, &kde_output_order_v1_interface, static_cast<int>(version), id);
    wl_resource_set_implementation(
        made, &requests, &self, [](wl_resource* it) { std::erase(of<FakeKWin>(it).orders_, it); });
    self.orders_.push_back(made);
    self.sendOrder(made);
  }

  // What one org_kde_kwin_blur holds until it is committed.
  struct Blur {
    FakeSurface& surface;
    std::vector<PixelRect> region;
  };

  static void createBlur(wl_client* client, wl_resource* manager, std::uint32_t id,
                         wl_resource* surface) {
    static const struct org_kde_kwin_blur_interface requests = {
        [](wl_client*, wl_resource* it) {
          of<Blur>(it).surface.pending_.blurred = of<Blur>(it).region;
        },
        [](wl_client*, wl_resource* it, wl_resource* region) {
          of<Blur>(it).region = of<FakeRegion>(region);
        },
        destroy};
    wl_resource* made = wl_resource_create(client, &org_kde_kwin_blur_interface,
                                           wl_resource_get_version(manager), id);
    wl_resource_set_implementation(made, &requests, new Blur{of<FakeSurface>(surface), {}},
                                   [](wl_resource* it) { delete &of<Blur>(it); });
  }

  static void bindBlur(wl_client* client, void* data, std::uint32_t version, std::uint32_t id) {
    static const struct org_kde_kwin_blur_manager_interface requests = {
        createBlur, [](wl_client*, wl_resource*, wl_resource* surface) {
          of<FakeSurface>(surface).pending_.blurred.emplace();
        }};
    wl_resource* made = wl_resource_create(client, &org_kde_kwin_blur_manager_interface,
                                           static_cast<int>(version), id);
    wl_resource_set_implementation(made, &requests, data, nullptr);
  }
};

FakeKWin::FakeKWin(FakeCompositor& compositor, std::uint32_t outputManagement)
    : compositor_(compositor) {
  wl_global_create(compositor.display(), &plasmaShell, 8, nullptr, neverBound);
  wl_global_create(compositor.display(), &outputManagementInterface,
                   static_cast<int>(outputManagement), nullptr, neverBound);
  orderGlobal_ = wl_global_create(compositor.display(), &kde_output_order_v1_interface, 1, this,
                                  Requests::bindOrder);
}

FakeKWin::~FakeKWin() {
  for (wl_resource* order : orders_) wl_resource_set_destructor(order, nullptr);
  wl_global_destroy(orderGlobal_);
  if (blur_) wl_global_destroy(blur_);
}

void FakeKWin::tellOrder(std::vector<std::string> connectors) {
  order_ = std::move(connectors);
  for (wl_resource* order : orders_) sendOrder(order);
}

void FakeKWin::sendOrder(wl_resource* order) const {
  for (const auto& connector : order_) kde_output_order_v1_send_output(order, connector.c_str());
  kde_output_order_v1_send_done(order);
}

void FakeKWin::offerBlur() {
  blur_ = wl_global_create(compositor_.display(), &org_kde_kwin_blur_manager_interface, 1, this,
                           Requests::bindBlur);
}

void FakeKWin::withdrawBlur() { wl_global_destroy(std::exchange(blur_, nullptr)); }

}  // namespace orvane::fakes
