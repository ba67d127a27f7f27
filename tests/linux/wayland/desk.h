#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "desktop/block_painter.h"
#include "fakes/cell_measurer.h"
#include "fakes/manual_main_actor.h"
#include "foundation/subject.h"
#include "linux/wayland/fake_compositor.h"
#include "linux/wayland/wayland_desktop.h"
#include "view/scene.h"

namespace orvane::host::wayland {

// How many pixels a picture told the compositor to look at again.
inline long changedPixels(const fakes::FakeSurface::Picture& picture) {
  long pixels = 0;
  for (const auto& rect : picture.changed) pixels += static_cast<long>(rect.width) * rect.height;
  return pixels;
}

// A beat that comes when the test says so.
class ManualSchedule final : public PeriodicSchedule {
 public:
  Subscription everySecond(std::function<void(Date)> tick) override {
    return ticks_.subscribe(std::move(tick));
  }
  void tick(Date instant) { ticks_.send(instant); }
  [[nodiscard]] std::size_t listeners() const { return ticks_.observerCount(); }

 private:
  Subject<Date> ticks_;
};

// A panel at a place that the test chooses, with the seconds of the instant modulo 100 where it is
// high enough for them.
class PanelView final : public RootView {
 public:
  Rect panel{60, 40, 300, 100};
  Fill surface = Color::srgb(0.1, 0.3, 0.9);
  Subject<> willChange;
  std::vector<Date> built;

  View body(Date now, Size) override {
    built.push_back(now);
    if (panel.isEmpty()) return {};
    const auto second = static_cast<int>(now.secondsSince1970) % 100;
    const std::string digits = {static_cast<char>('0' + second / 10),
                                static_cast<char>('0' + second % 10)};
    View::FlexibleFrame window;
    window.maxWidth = unlimitedWidth;
    window.maxHeight = unlimitedWidth;
    window.alignment = Alignment::topLeading();
    const View content = panel.height < 50 ? View() : text(digits);
    return content.font({40, FontWeight::bold, FontDesign::standard, true})
        .lineLimit(1)
        .frame(panel.width, panel.height)
        .background(filled(Shape::rectangle(), surface))
        .padding({panel.y, panel.x, 0, 0})
        .frame(window);
  }
  Subscription onWillChange(std::function<void()> observer) override {
    return willChange.subscribe(std::move(observer));
  }
};

// A program's side of a fake compositor: the server under test and what it leans on.
class Desk : public testing::Test {
 protected:
  explicit Desk(fakes::FakeCompositor::Offers offers = {}) : compositor(offers) {}
  ~Desk() override {
    window.reset();
    compositor.settle();
    server.reset();
    EXPECT_EQ(compositor.complaints(), std::vector<std::string>());
  }

  // Connects, and answers why it could not.
  std::string connect() {
    WaylandDesktop desktop;
    compositor.serveDuring([&] {
      desktop = makeWaylandDesktop({actor, schedule, notifications, measurer, painter,
                                    [&](const DesktopLoss& loss) { losses.push_back(loss); }});
    });
    server = std::move(desktop.server);
    actor.runUntilIdle();
    compositor.settle();
    return desktop.failure;
  }

  // A window with the panel as the application makes it, not shown yet.
  std::shared_ptr<NSWindow> makeWindow(Rect frame = {0, 0, 1280, 720}) {
    auto made = server->makeWindow(frame, NSWindowStyleMask::fullSizeContentView,
                                   NSBackingStoreType::buffered, false);
    made->properties.ignoresMouseEvents = true;
    made->properties.level = server->windowLevelForKey(CGWindowLevelKey::desktopWindow);
    made->setContentView(std::make_unique<NSHostingView>(view));
    return made;
  }

  // One output, and the window shown on it.
  void show() {
    output = &compositor.addOutput({.name = "DP-1"});
    ASSERT_EQ(connect(), "");
    window = makeWindow();
    window->orderBack();
    settle();
  }

  void settle() {
    compositor.settle();
    actor.runUntilIdle();
    compositor.settle();
  }
  void tick(int seconds = 1) {
    for (int i = 0; i < seconds; ++i) {
      instant = instant + 1;
      schedule.tick(instant);
      settle();
    }
  }

  [[nodiscard]] fakes::FakeSurface& surface(std::size_t index = 0) {
    return compositor.surface(index);
  }
  [[nodiscard]] const std::vector<fakes::FakeSurface::Picture>& pictures(std::size_t index = 0) {
    return surface(index).pictures;
  }
  [[nodiscard]] const fakes::FakeSurface::Picture& lastPicture() {
    return compositor.surfaces().back()->pictures.back();
  }

  // What a picture of the view at `now` looks like when all of it is painted.
  std::vector<std::uint32_t> painted(Date now, double scale, PixelPoint origin, int width,
                                     int height, Size size = {1280, 720}) {
    Scene scene(view, measurer);
    (void)scene.update(now, size);
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width) * height);
    const PaintTarget target{
        {reinterpret_cast<std::uint8_t*>(pixels.data()), width, height, 4 * width}, scale, origin};
    desktop::BlockPainter().paint(scene.list(), target, {{origin.x, origin.y, width, height}});
    return pixels;
  }

  fakes::FakeCompositor compositor;
  fakes::FakeCompositor::Output* output = nullptr;  // the compositor's own, from show() on
  fakes::ManualMainActor actor{{1'795'000'000.4}};
  ManualSchedule schedule;
  NotificationCenter notifications;
  fakes::CellMeasurer measurer;
  desktop::BlockPainter painter;
  std::vector<DesktopLoss> losses;
  std::unique_ptr<WindowServer> server;
  std::shared_ptr<PanelView> view = std::make_shared<PanelView>();
  std::shared_ptr<NSWindow> window;
  Date instant{1'795'000'000};
};

}  // namespace orvane::host::wayland
