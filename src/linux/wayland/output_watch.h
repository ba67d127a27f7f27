#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "linux/wayland/display_source.h"
#include "linux/wayland/handles.h"
#include "linux/wayland/output_order.h"

namespace orvane::host::wayland {

// A connection of its own on which the compositor tells of its outputs and their order and of
// nothing else. Where the answers to a picture are left unread on the other one, this one still
// wakes the program at once when a screen comes, goes or changes.
class OutputWatch {
 public:
  // Connects to the compositor that the environment names, without waiting for it. `stirred`: an
  // output came, went or was described anew, their order changed, or the connection ended.
  explicit OutputWatch(std::function<void()> stirred);
  OutputWatch(const OutputWatch&) = delete;
  OutputWatch& operator=(const OutputWatch&) = delete;

  // Whether no change goes unheard: false until the compositor has told what there is, and where
  // there is no connection.
  [[nodiscard]] bool isListening() const { return !lost_ && answers_ == allAnswers; }

 private:
  struct Announced {
    std::uint32_t name = 0;
    std::uint32_t version = 0;
  };
  // The first holds the globals, the second what the outputs tell of themselves.
  static constexpr int allAnswers = 2;

  static const wl_registry_listener registryListener;
  void announced(std::uint32_t name, const std::string& interface, std::uint32_t version);
  void ask();
  void bindOutputs();
  void dispatched();
  void lose();

  std::function<void()> stirred_;
  bool lost_ = false;
  int answers_ = 0;
  Handle<wl_display> display_;
  Handle<wl_registry> registry_;
  Handle<wl_callback> question_;
  std::vector<Announced> unbound_;
  std::map<std::uint32_t, Handle<wl_output>> outputs_;
  std::unique_ptr<OutputOrder> order_;  // of KWin
  std::unique_ptr<DisplaySource> source_;
};

}  // namespace orvane::host::wayland
