#include "linux/wayland/output_watch.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "linux/wayland/first_contact.h"

namespace orvane::host::wayland {

const wl_registry_listener OutputWatch::registryListener = {
    [](void* it, wl_registry*, std::uint32_t name, const char* interface, std::uint32_t version) {
      if (std::string_view(interface) != wl_output_interface.name) return;
      static_cast<OutputWatch*>(it)->unbound_.push_back({name, version});
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
