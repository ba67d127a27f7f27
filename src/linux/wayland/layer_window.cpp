#include "linux/wayland/layer_window.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>

#include "linux/wayland/kwin_signs.h"
#include "linux/wayland/window_levels.h"
#include "view/glass.h"
#include "view/pixel_grid.h"

namespace orvane::host::wayland {
namespace {

// A surface that has lived this long was not refused.
constexpr int healthyTicks = 10;
constexpr int mostRefusals = 8;
// A picture that waits for so many ticks to be drawn or shown is seen by nobody.
constexpr int mostTicksUnseen = 2;
constexpr std::chrono::milliseconds firstRetry{250};
// The whole second that holds the instant: windows that are built at different moments within a
// second show the same one, and the next tick shows the next.
Date wholeSecond(Date instant) { return {std::floor(instant.secondsSince1970)}; }

}  // namespace

LayerWindow::LayerWindow(const WaylandNeighbours& neighbours, Connection& connection, Rect frame)
    : neighbours_(neighbours),
      connection_(connection),
      frame_(frame),
      picture_(connection.globals().shm.get(), neighbours.painter, [this] {
        if (stale_) refresh();
      }) {
  auto& outputs = connection_.outputs();
  outputRemoved_ = outputs.removed().subscribe([this](auto name) { outputRemoved(name); });
  outputDescribed_ = outputs.described().subscribe([this](auto name) { outputDescribed(name); });
  connection_.rest().add(*this);
}

LayerWindow::~LayerWindow() {
  close();
  connection_.rest().remove(*this);
}

void LayerWindow::setFrame(Rect frame, bool display) {
  frame_ = frame;
  if (!onScreen_) return;
  place();
  if (display) refresh();
}

void LayerWindow::setContentView(std::unique_ptr<NSHostingView> view) {
  contentWillChange_.cancel();
  scene_.reset();
  content_ = std::move(view);
  dropSurface();
  if (!content_ || !content_->rootView) return;
  scene_.emplace(content_->rootView, neighbours_.measurer);
  contentWillChange_ = content_->rootView->onWillChange([this] { rebuildLater(); });
  refresh();
}

void LayerWindow::orderBack() {
  onScreen_ = true;
  allowSurface();
  place();
  refresh();
}

void LayerWindow::close() {
  onScreen_ = false;
  ticks_.cancel();
  retry_.cancel();
  dropSurface();
  standOn(0);
}

// ---- Where

// Chooses the output and the kind of surface anew; keeps the surface where both are as before.
void LayerWindow::place() {
  const Output* output = chooseOutput();
  const std::uint32_t name = output ? output->name() : 0;
  if (name != output_ || (surface_ && surface_->role() != wantedRole())) dropSurface();
  if (name != output_) allowSurface();
  standOn(name);
  beginTicks();
}

void LayerWindow::standOn(std::uint32_t output) {
  output_ = output;
  connection_.outputs().claims().claim(this, output);
}

void LayerWindow::allowSurface() {
  closedInARow_ = 0;
  refused_ = false;
  retry_.cancel();
}

// Keeps the output while it has the frame. Of several that have it, the first without a window.
const Output* LayerWindow::chooseOutput() const {
  const auto candidates = connection_.outputs().withFrame(frame_);
  const auto present = std::find_if(candidates.begin(), candidates.end(),
                                    [&](const auto* it) { return it->name() == output_; });
  if (present != candidates.end()) return *present;
  const auto& claims = connection_.outputs().claims();
  const auto free = std::find_if(candidates.begin(), candidates.end(), [&](const auto* it) {
    return !claims.isTakenByAnother(this, it->name());
  });
  if (free != candidates.end()) return *free;
  return candidates.empty() ? nullptr : candidates.front();
}

SurfaceRole LayerWindow::wantedRole() const {
  const bool raised = properties.level > levelFor(CGWindowLevelKey::desktopWindow);
  return {raised ? ZWLR_LAYER_SHELL_V1_LAYER_TOP : ZWLR_LAYER_SHELL_V1_LAYER_BOTTOM,
          surfaceName(connection_.globals().kwin), properties.ignoresMouseEvents};
}

SurfaceScale LayerWindow::scale() const {
  if (surface_ && surface_->preferredScale()) return *surface_->preferredScale();
  const Output* output = connection_.outputs().find(output_);
  return SurfaceScale::whole(output ? output->description()->scale : 1);
}

void LayerWindow::outputRemoved(std::uint32_t name) {
  if (name != output_) return;
  dropSurface();
  retry_.cancel();
  ticks_.cancel();
  standOn(0);
}

void LayerWindow::outputDescribed(std::uint32_t name) {
  // Another size comes as another frame; until then there is nothing true to draw.
  const Output* output = connection_.outputs().find(output_);
  if (name == output_ && output && output->description()->frame == frame_) refresh();
}

// ---- When

void LayerWindow::beginTicks() {
  if (output_ == 0) return ticks_.cancel();
  if (ticks_) return;
  instant_ = wholeSecond(neighbours_.mainActor.now());
  ticks_ = neighbours_.schedule.everySecond([this](Date instant) { tick(instant); });
}

void LayerWindow::tick(Date instant) {
  instant_ = instant;
  connection_.rest().beat(instant);
  if (surface_ && ++ticksShown_ >= healthyTicks) closedInARow_ = 0;
  refresh();
  // Some compositors tell of a picture that nobody sees that it is shown, and then keep the
  // buffers.
  const bool waits = stale_ && !picture_.isOutOfMemory();
  ticksUnseen_ = waits ? ticksUnseen_ + 1 : 0;
  // Until the picture is shown. A young surface goes on counting its ticks.
  if (ticksUnseen_ >= mostTicksUnseen && ticksShown_ >= healthyTicks) ticks_.cancel();
  connection_.rest().restIfNobodyWaits();
}

void LayerWindow::rebuildLater() {
  if (rebuildPosted_) return;
  rebuildPosted_ = true;
  neighbours_.mainActor.post([weak = weak_from_this()] {
    const auto self = weak.lock();
    if (!self) return;
    self->rebuildPosted_ = false;
    self->refresh();
  });
}

void LayerWindow::surfaceShown() {
  ticksUnseen_ = 0;
  if (stale_) refresh();
}

// ---- What

Awaits LayerWindow::awaits() const {
  if (!surface_) return Awaits::nothing;
  const bool isSettled = ticks_ && ticksShown_ >= healthyTicks;
  return !isSettled || stale_ || surface_->awaitsConfigure() ? Awaits::anAnswer
                                                             : Awaits::nextSecond;
}

// Whether the compositor is to answer before anything can be drawn: it has not shown the last
// picture yet, or not told how much room there is for one.
bool LayerWindow::isSurfaceBusy() const {
  return surface_ && (surface_->isFramePending() || surface_->awaitsConfigure());
}

// Brings the screen up to date, or remembers to do so as soon as the compositor is ready for it.
void LayerWindow::refresh() {
  if (!onScreen_ || !scene_ || output_ == 0 || refused_ || retry_) return;
  connection_.rest().listen();
  stale_ = isSurfaceBusy();
  if (stale_) return;
  beginTicks();  // which rest while nobody sees anything
  picture_.change(scene_->update(instant_, frame_.size()));
  // An area that lies on the pixels of one scale may lie across those of another.
  if (scale() != picture_.scale()) drawnArea_.reset();
  const auto needed = areaCovering(scene_->bounds(), scale(), frame_.size());
  if (needed.isEmpty()) return dropSurface();
  drawnArea_.update(needed, wholeOutput(frame_.size()), instant_);
  show(drawnArea_.area());
}

void LayerWindow::show(const SurfaceArea& area) {
  if (!surface_) {
    const Output* output = connection_.outputs().find(output_);
    if (!output) return;
    surface_.emplace(connection_.globals(), output->handle(), wantedRole(), area,
                     static_cast<Observer&>(*this));
    return;
  }
  if (const auto granted = surface_->moveTo(area)) draw(*granted);
}

void LayerWindow::draw(const SurfaceArea& area) {
  const SurfaceScale scale = this->scale();
  picture_.moveTo(area, scale);
  const bool reglazed = blurBehindGlass(area);
  const auto changed = picture_.changed();
  if (changed.empty()) {
    if (reglazed) surface_->commit();
    return;
  }
  if (const auto* buffer = picture_.paint(scene_->list())) {
    surface_->present(buffer->handle(), area, scale, changed);
    return;
  }
  stale_ = true;
  if (picture_.isOutOfMemory() && !std::exchange(complained_, true)) {
    std::fputs("orvane: There is no memory for a window's picture.\n", stderr);
  }
}

// Answers whether the surface has to be committed for it.
bool LayerWindow::blurBehindGlass(const SurfaceArea& area) {
  std::vector<PixelRect> parts;
  // Where nobody blurs, the glass need not be looked for.
  if (connection_.globals().blurs) {
    for (const auto& pane : glassPanes(scene_->list())) {
      for (const auto& points : pixelsWithin(pane, 1)) {
        parts.push_back({points.x - area.x, points.y - area.y, points.width, points.height});
      }
    }
  }
  return surface_->blurBehind(connection_.globals(), parts);
}

// ---- The end of a surface

void LayerWindow::dropSurface() {
  surface_.reset();
  picture_.clear();
  drawnArea_.reset();
  stale_ = false;
  ticksShown_ = 0;
}

void LayerWindow::surfaceClosed() {
  dropSurface();
  retryLater();
}

// The output may be about to go, or the compositor was restarting something; it may also never want
// us, which must not become a quarrel.
void LayerWindow::retryLater() {
  if (++closedInARow_ > mostRefusals) {
    std::fputs("orvane: The compositor keeps closing the window; it stays closed.\n", stderr);
    refused_ = true;
    ticks_.cancel();
    return;
  }
  const auto delay = firstRetry * (1 << (closedInARow_ - 1));
  retry_ = neighbours_.mainActor.after(delay, [this] {
    retry_ = {};
    refresh();
  });
}

}  // namespace orvane::host::wayland
