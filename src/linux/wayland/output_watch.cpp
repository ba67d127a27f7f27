#include "linux/wayland/output_watch.h"

#include <algorithm>
#include <utility>

#include "linux/wayland/first_contact.h"

namespace orvane::host::wayland {

const wl_registry_listener OutputWatch::registryListener = {
    [](void* it, wl_registry*, std::uint32_t name, const char* interface, std::uint32_t version) {
      static_cast<OutputWatch*>(it)->announced(name, interface, version);
    },
    [](void* it, wl_registry*, std::uint32_t name) {
      auto& self = *static_cast<OutputWatch*>(it);
      std::erase_if(self.unbound_, [&](const auto& output) { return output.name == name; });
      self.outputs_.erase(name);
    },
};

OutputWatch::OutputWatch(std::function<void()> stirred)
    : stirred_(std::move(stirred)), display_(connectToCompositor()) {
  lost_ = display_ == nullptr;
  if (lost_) return;
  registry_.reset(wl_display_get_registry(display_.get()));
  wl_registry_add_listener(registry_.get(), &registryListener, this);
  ask();
  source_ = std::make_unique<DisplaySource>(
      display_.get(), DisplaySource::Events{[this] { dispatched(); }, [this] { lose(); }});
}

void OutputWatch::announced(std::uint32_t name, const std::string& interface,
                            std::uint32_t version) {
  if (interface == wl_output_interface.name) unbound_.push_back({name, version});
  if (interface != kde_output_order_v1_interface.name || order_) return;
  Handle<kde_output_order_v1> order(static_cast<kde_output_order_v1*>(
      wl_registry_bind(registry_.get(), name, &kde_output_order_v1_interface, 1)));
  order_ = std::make_unique<OutputOrder>(std::move(order), [](const auto&) {});
}

void OutputWatch::ask() {
  static const wl_callback_listener listener = {[](void* it, wl_callback*, std::uint32_t) {
    auto& self = *static_cast<OutputWatch*>(it);
    self.question_.reset();
    ++self.answers_;
  }};
  question_.reset(wl_display_sync(display_.get()));
  wl_callback_add_listener(question_.get(), &listener, this);
}

// When a batch is done: one that came and went within it must not be asked for.
void OutputWatch::bindOutputs() {
  static const wl_output_listener indifferent = {
      [](void*, wl_output*, std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t,
         const char*, const char*, std::int32_t) {},
      [](void*, wl_output*, std::uint32_t, std::int32_t, std::int32_t, std::int32_t) {},
      [](void*, wl_output*) {},
      [](void*, wl_output*, std::int32_t) {},
      [](void*, wl_output*, const char*) {},
      [](void*, wl_output*, const char*) {},
  };
  for (const auto& [name, version] : std::exchange(unbound_, {})) {
    Handle<wl_output> output(static_cast<wl_output*>(
        wl_registry_bind(registry_.get(), name, &wl_output_interface, std::min(version, 4U))));
    wl_output_add_listener(output.get(), &indifferent, nullptr);
    outputs_[name] = std::move(output);
  }
}

void OutputWatch::dispatched() {
  bindOutputs();
  if (!question_ && answers_ < allAnswers) ask();
  if (isListening()) stirred_();
}

void OutputWatch::lose() {
  lost_ = true;
  stirred_();
}

}  // namespace orvane::host::wayland
