#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "linux/wayland/display_source.h"
#include "linux/wayland/first_contact.h"
#include "linux/wayland/handles.h"
#include "linux/wayland/output_order.h"
#include "linux/wayland/output_set.h"
#include "linux/wayland/reading_rest.h"
#include "platform/desktop_loss.h"

namespace orvane::host::wayland {

// The connection to one compositor: its globals and its outputs.
class Connection {
 public:
  struct Events {
    std::function<void()> screensChanged;  // perhaps several times in a row
    // Once; the outputs are gone already.
    std::function<void(const DesktopLoss&)> lost;
  };

  explicit Connection(Events events);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  // Connects and waits for the compositor's answers. An empty text, or why it cannot be used.
  [[nodiscard]] std::string open(const Wait& wait);

  [[nodiscard]] const Globals& globals() const { return globals_; }
  [[nodiscard]] OutputSet& outputs() { return outputs_; }
  [[nodiscard]] const OutputSet& outputs() const { return outputs_; }
  // Once it is open.
  [[nodiscard]] ReadingRest& rest() { return *rest_; }
  [[nodiscard]] bool isLost() const { return lost_; }

 private:
  struct Announced {
    std::uint32_t name = 0;
    std::uint32_t version = 0;
  };

  static const wl_registry_listener registryListener;
  void announced(std::uint32_t name, const std::string& interface, std::uint32_t version);
  void withdrawn(std::uint32_t name);
  void dispatched();
  void bindOutputs();
  void bindOutputOrder(std::uint32_t name);
  [[nodiscard]] std::string missing() const;
  void lose();

  Events events_;
  bool lost_ = false;
  Handle<wl_display> display_;
  Handle<wl_registry> registry_;
  Globals globals_;
  std::vector<Announced> unboundOutputs_;
  OutputSet outputs_;
  std::unique_ptr<OutputOrder> outputOrder_;
  std::uint32_t blursName_ = 0;  // of the global
  std::unique_ptr<DisplaySource> source_;
  std::unique_ptr<ReadingRest> rest_;
};

}  // namespace orvane::host::wayland
