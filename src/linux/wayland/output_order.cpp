#include "linux/wayland/output_order.h"

#include <utility>

namespace orvane::host::wayland {

OutputOrder::OutputOrder(Handle<kde_output_order_v1> order,
                         std::function<void(std::vector<std::string>)> told)
    : order_(std::move(order)), told_(std::move(told)) {
  static const kde_output_order_v1_listener listener = {
      [](void* it, kde_output_order_v1*, const char* connector) {
        static_cast<OutputOrder*>(it)->connectors_.emplace_back(connector);
      },
      [](void* it, kde_output_order_v1*) {
        auto& self = *static_cast<OutputOrder*>(it);
        self.told_(std::exchange(self.connectors_, {}));
      }};
  kde_output_order_v1_add_listener(order_.get(), &listener, this);
}

}  // namespace orvane::host::wayland
