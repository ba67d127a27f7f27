#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "linux/wayland/handles.h"
#include "linux/wayland/screens.h"

namespace orvane::host::wayland {

// One output. What the compositor tells of it arrives in pieces and counts from the event on that
// closes them.
class Output {
 public:
  // `changed` is called whenever description() differs from before. `name` is the global's.
  Output(Handle<wl_output> output, std::uint32_t name, std::function<void()> changed);
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  // Logical geometry and names from xdg-output, which may be offered after the output.
  void describeWith(zxdg_output_manager_v1* manager);

  [[nodiscard]] std::uint32_t name() const { return name_; }
  [[nodiscard]] wl_output* handle() const { return output_.get(); }
  // Nothing until the compositor has told all, and while it has no size.
  [[nodiscard]] const std::optional<OutputDescription>& description() const { return current_; }
  // Which output this is as long as it is connected.
  [[nodiscard]] std::string identity() const;

 private:
  struct Told {
    std::string connector, make, model;
    int x = 0, y = 0, pixelWidth = 0, pixelHeight = 0, scale = 1;
    bool sideways = false;
    std::optional<Point> logicalOrigin;
    std::optional<Size> logicalSize;
  };

  static const wl_output_listener outputListener;
  static const zxdg_output_v1_listener xdgListener;
  void finish();
  [[nodiscard]] Rect frame() const;

  Handle<wl_output> output_;
  Handle<zxdg_output_v1> xdgOutput_;
  std::uint32_t name_;
  std::function<void()> changed_;
  Told told_;
  std::optional<OutputDescription> current_;
};

}  // namespace orvane::host::wayland
