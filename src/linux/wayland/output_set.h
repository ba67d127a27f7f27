#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "foundation/subject.h"
#include "linux/wayland/output.h"
#include "linux/wayland/output_claims.h"

namespace orvane::host::wayland {

// The outputs that are there, in the order in which the compositor announced them.
class OutputSet {
 public:
  explicit OutputSet(std::function<void()> changed) : changed_(std::move(changed)) {}

  void add(Handle<wl_output> output, std::uint32_t name, zxdg_output_manager_v1* manager);
  void remove(std::uint32_t name);  // one that is unknown is none
  void clear();
  void describeWith(zxdg_output_manager_v1* manager);
  // The compositor's own order of outputs, by connector.
  void setOrder(std::vector<std::string> connectors);
  // All outputs show parts of one plane: one that shows only what another shows is no screen.
  void showOnePlane();

  [[nodiscard]] std::vector<NSScreen> screens() const;
  [[nodiscard]] std::optional<NSScreen> mainScreen() const;
  [[nodiscard]] const Output* find(std::uint32_t name) const;
  // Those that have this frame; mirrored ones share it.
  [[nodiscard]] std::vector<const Output*> withFrame(const Rect& frame) const;
  [[nodiscard]] OutputClaims& claims() { return claims_; }

  // Tells that the output's surfaces are gone, before it is.
  [[nodiscard]] Subject<std::uint32_t>& removed() { return removed_; }
  // Tells that an output was described anew.
  [[nodiscard]] Subject<std::uint32_t>& described() { return described_; }

 private:
  [[nodiscard]] std::vector<const Output*> ready() const;
  [[nodiscard]] std::vector<const Output*> screenOutputs() const;

  std::function<void()> changed_;
  std::vector<std::unique_ptr<Output>> outputs_;
  std::vector<std::string> order_;
  bool onePlane_ = false;
  OutputClaims claims_;
  Subject<std::uint32_t> removed_;
  Subject<std::uint32_t> described_;
};

}  // namespace orvane::host::wayland
