#include "linux/wayland/output.h"

#include <algorithm>

namespace orvane::host::wayland {
namespace {

Output& of(void* it) { return *static_cast<Output*>(it); }

bool isSideways(std::int32_t transform) {
  return transform == WL_OUTPUT_TRANSFORM_90 || transform == WL_OUTPUT_TRANSFORM_270 ||
         transform == WL_OUTPUT_TRANSFORM_FLIPPED_90 ||
         transform == WL_OUTPUT_TRANSFORM_FLIPPED_270;
}

std::string textOf(const char* text) { return text ? text : ""; }

}  // namespace

const wl_output_listener Output::outputListener = {
    [](void* it, wl_output*, std::int32_t x, std::int32_t y, std::int32_t, std::int32_t,
       std::int32_t, const char* make, const char* model, std::int32_t transform) {
      Told& told = of(it).told_;
      told.x = x;
      told.y = y;
      told.make = textOf(make);
      told.model = textOf(model);
      told.sideways = isSideways(transform);
    },
    [](void* it, wl_output*, std::uint32_t flags, std::int32_t width, std::int32_t height,
       std::int32_t) {
      if ((flags & WL_OUTPUT_MODE_CURRENT) == 0) return;
      of(it).told_.pixelWidth = width;
      of(it).told_.pixelHeight = height;
    },
    [](void* it, wl_output*) { of(it).finish(); },
    [](void* it, wl_output*, std::int32_t scale) { of(it).told_.scale = std::max(scale, 1); },
    [](void* it, wl_output*, const char* name) { of(it).told_.connector = textOf(name); },
    [](void*, wl_output*, const char*) {},
};

const zxdg_output_v1_listener Output::xdgListener = {
    [](void* it, zxdg_output_v1*, std::int32_t x, std::int32_t y) {
      of(it).told_.logicalOrigin = Point{static_cast<double>(x), static_cast<double>(y)};
    },
    [](void* it, zxdg_output_v1*, std::int32_t width, std::int32_t height) {
      of(it).told_.logicalSize = Size{static_cast<double>(width), static_cast<double>(height)};
    },
    // Since version 3 the output's own event closes a description instead.
    [](void* it, zxdg_output_v1* xdg) {
      if (zxdg_output_v1_get_version(xdg) < 3) of(it).finish();
    },
    [](void* it, zxdg_output_v1*, const char* name) { of(it).told_.connector = textOf(name); },
    [](void*, zxdg_output_v1*, const char*) {},
};

Output::Output(Handle<wl_output> output, std::uint32_t name, std::function<void()> changed)
    : output_(std::move(output)), name_(name), changed_(std::move(changed)) {
  wl_output_add_listener(output_.get(), &outputListener, this);
}

void Output::describeWith(zxdg_output_manager_v1* manager) {
  if (xdgOutput_) return;
  xdgOutput_.reset(zxdg_output_manager_v1_get_xdg_output(manager, output_.get()));
  zxdg_output_v1_add_listener(xdgOutput_.get(), &xdgListener, this);
}

std::string Output::identity() const { return "output " + std::to_string(name_); }

void Output::finish() {
  // The first event that closes a description may come before xdg-output has told its part.
  if (xdgOutput_ && !told_.logicalSize) return;
  std::optional<OutputDescription> next;
  if (!frame().isEmpty()) {
    next = OutputDescription{told_.connector, told_.make, told_.model, frame(), told_.scale};
  }
  if (next == current_) return;
  current_ = std::move(next);
  changed_();
}

Rect Output::frame() const {
  if (told_.logicalSize) {
    const Point origin = told_.logicalOrigin.value_or(Point{});
    return {origin.x, origin.y, told_.logicalSize->width, told_.logicalSize->height};
  }
  const int width = told_.sideways ? told_.pixelHeight : told_.pixelWidth;
  const int height = told_.sideways ? told_.pixelWidth : told_.pixelHeight;
  // Whole points, as compositors that tell no logical size lay out their outputs.
  const int logicalWidth = width / told_.scale;
  const int logicalHeight = height / told_.scale;
  return {static_cast<double>(told_.x), static_cast<double>(told_.y),
          static_cast<double>(logicalWidth), static_cast<double>(logicalHeight)};
}

}  // namespace orvane::host::wayland
