#include "linux/wayland/output_set.h"

#include <algorithm>
#include <utility>

namespace orvane::host::wayland {
namespace {

std::vector<OutputDescription> descriptionsOf(const std::vector<const Output*>& outputs) {
  std::vector<OutputDescription> descriptions;
  descriptions.reserve(outputs.size());
  for (const Output* output : outputs) descriptions.push_back(*output->description());
  return descriptions;
}

}  // namespace

void OutputSet::add(Handle<wl_output> output, std::uint32_t name, zxdg_output_manager_v1* manager) {
  outputs_.push_back(std::make_unique<Output>(std::move(output), name, [this, name] {
    described_.send(name);
    changed_();
  }));
  if (manager) outputs_.back()->describeWith(manager);
}

void OutputSet::remove(std::uint32_t name) {
  const auto it = std::find_if(outputs_.begin(), outputs_.end(),
                               [&](const auto& output) { return output->name() == name; });
  if (it == outputs_.end()) return;
  // Out of the list first: who hears of the removal must not find it there.
  const auto output = std::move(*it);
  outputs_.erase(it);
  removed_.send(name);
  if (output->description()) changed_();
}

void OutputSet::clear() {
  while (!outputs_.empty()) remove(outputs_.back()->name());
}

void OutputSet::describeWith(zxdg_output_manager_v1* manager) {
  for (const auto& output : outputs_) output->describeWith(manager);
}

void OutputSet::setOrder(std::vector<std::string> connectors) {
  if (connectors == order_) return;
  order_ = std::move(connectors);
  changed_();
}

void OutputSet::showOnePlane() {
  if (!std::exchange(onePlane_, true)) changed_();
}

std::vector<const Output*> OutputSet::ready() const {
  std::vector<const Output*> ready;
  for (const auto& output : outputs_) {
    if (output->description()) ready.push_back(output.get());
  }
  return ready;
}

std::vector<const Output*> OutputSet::screenOutputs() const {
  auto all = ready();
  if (!onePlane_) return all;
  const auto descriptions = descriptionsOf(all);
  std::vector<const Output*> outputs;
  for (std::size_t index = 0; index < all.size(); ++index) {
    if (!isRedundant(index, descriptions, order_)) outputs.push_back(all[index]);
  }
  return outputs;
}

std::vector<NSScreen> OutputSet::screens() const {
  std::vector<NSScreen> screens;
  for (const Output* output : screenOutputs()) {
    screens.push_back(screenOf(*output->description(), output->identity()));
  }
  return screens;
}

std::optional<NSScreen> OutputSet::mainScreen() const {
  const auto main = mainOutput(descriptionsOf(screenOutputs()), order_);
  if (!main) return std::nullopt;
  return screens()[*main];
}

const Output* OutputSet::find(std::uint32_t name) const {
  for (const Output* output : ready()) {
    if (output->name() == name) return output;
  }
  return nullptr;
}

std::vector<const Output*> OutputSet::withFrame(const Rect& frame) const {
  std::vector<const Output*> matching;
  for (const Output* output : ready()) {
    if (output->description()->frame == frame) matching.push_back(output);
  }
  return matching;
}

}  // namespace orvane::host::wayland
