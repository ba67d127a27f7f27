#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "example_board.h"
#include "linux/paint/fonts.h"
#include "linux/paint/painter.h"
#include "linux/paint/text_measurer.h"
#include "view/pixel_grid.h"
#include "view/scene.h"

namespace orvane::bench {
namespace {

// Fonts, measurer and painter of a program that has just started.
struct Drawing {
  std::shared_ptr<host::Typesetter> typesetter = host::makeTypesetter();
  std::unique_ptr<TextMeasurer> measurer = host::makeTextMeasurer(typesetter);
  std::unique_ptr<Painter> painter = host::makePainter(typesetter);
};

// A window's pixels: no more than the scene draws on.
class Surface {
 public:
  Surface(const Rect& bounds, double scale)
      : area_(pixelsCovering(bounds, scale)),
        bytes_(static_cast<std::size_t>(area_.width) * area_.height * 4),
        target_{{bytes_.data(), area_.width, area_.height, area_.width * 4},
                scale,
                {area_.x, area_.y},
                nullptr} {}

  [[nodiscard]] const PaintTarget& target() const { return target_; }
  [[nodiscard]] std::vector<PixelRect> pixels(const std::vector<Rect>& rects) const {
    std::vector<PixelRect> result;
    for (const auto& rect : rects) result.push_back(pixelsCovering(rect, target_.scale));
    return result;
  }

 private:
  PixelRect area_;
  std::vector<std::uint8_t> bytes_;
  PaintTarget target_;
};

struct Screen {
  Size size;  // in points
  double scale;
};

Screen screenOf(const benchmark::State& state) {
  return state.range(0) == 1 ? Screen{{1920, 1080}, 1} : Screen{{1920, 1080}, 2};
}

// What a window does each second: the body at the new instant, its layout, the comparison with what
// is shown, and the painting of what differs.
void oneTick(benchmark::State& state) {
  const ExampleBoard board;
  const Drawing drawing;
  const auto screen = screenOf(state);
  Scene scene(board.view(), *drawing.measurer);
  int second = 0;
  const auto first = scene.update(ExampleBoard::start, screen.size);
  const Surface surface(scene.bounds(), screen.scale);
  drawing.painter->paint(scene.list(), surface.target(), surface.pixels(first));
  double painted = 0;
  for (auto _ : state) {
    second = (second + 1) % 3600;
    const auto damage = scene.update(ExampleBoard::start + second, screen.size);
    const auto pixels = surface.pixels(damage);
    drawing.painter->paint(scene.list(), surface.target(), pixels);
    painted += static_cast<double>(areaOf(pixels));
  }
  state.counters["pixels"] = benchmark::Counter(painted, benchmark::Counter::kAvgIterations);
}
BENCHMARK(oneTick)->ArgName("scale")->Arg(1)->Arg(2)->Unit(benchmark::kMicrosecond);

// The three parts of a tick, each by itself: the body that the cards make of the instant...
void bodyOfTick(benchmark::State& state) {
  const ExampleBoard board;
  const auto view = board.view();
  int second = 0;
  for (auto _ : state) {
    second = (second + 1) % 3600;
    benchmark::DoNotOptimize(view->body(ExampleBoard::start + second, {1920, 1080}));
  }
}
BENCHMARK(bodyOfTick)->Unit(benchmark::kMicrosecond);

// ... the body, its layout and the comparison ...
void sceneOfTick(benchmark::State& state) {
  const ExampleBoard board;
  const Drawing drawing;
  Scene scene(board.view(), *drawing.measurer);
  int second = 0;
  for (auto _ : state) {
    second = (second + 1) % 3600;
    benchmark::DoNotOptimize(scene.update(ExampleBoard::start + second, {1920, 1080}));
  }
}
BENCHMARK(sceneOfTick)->Unit(benchmark::kMicrosecond);

// ... and the painting of one digit.
void paintOfTick(benchmark::State& state) {
  const ExampleBoard board;
  const Drawing drawing;
  const auto screen = screenOf(state);
  Scene scene(board.view(), *drawing.measurer);
  const auto first = scene.update(ExampleBoard::start + 3, screen.size);
  const Surface surface(scene.bounds(), screen.scale);
  drawing.painter->paint(scene.list(), surface.target(), surface.pixels(first));
  const auto digit = surface.pixels(scene.update(ExampleBoard::start + 4, screen.size));
  for (auto _ : state) drawing.painter->paint(scene.list(), surface.target(), digit);
}
BENCHMARK(paintOfTick)->ArgName("scale")->Arg(1)->Arg(2)->Unit(benchmark::kMicrosecond);

// A tick that turns the minute: the rows' countdowns change too.
void tickOfMinute(benchmark::State& state) {
  const ExampleBoard board;
  const Drawing drawing;
  const auto screen = screenOf(state);
  Scene scene(board.view(), *drawing.measurer);
  int minute = 0;
  const auto first = scene.update(ExampleBoard::start, screen.size);
  const Surface surface(scene.bounds(), screen.scale);
  drawing.painter->paint(scene.list(), surface.target(), surface.pixels(first));
  for (auto _ : state) {
    minute = (minute + 1) % (24 * 60);
    const auto damage = scene.update(ExampleBoard::start + 60 * minute, screen.size);
    drawing.painter->paint(scene.list(), surface.target(), surface.pixels(damage));
  }
}
BENCHMARK(tickOfMinute)->ArgName("scale")->Arg(1)->Arg(2)->Unit(benchmark::kMicrosecond);

// From nothing laid out and no font opened to all pixels of a window.
void firstFullPaint(benchmark::State& state) {
  const ExampleBoard board;
  const auto screen = screenOf(state);
  for (auto _ : state) {
    const Drawing drawing;
    Scene scene(board.view(), *drawing.measurer);
    const auto damage = scene.update(ExampleBoard::start, screen.size);
    const Surface surface(scene.bounds(), screen.scale);
    drawing.painter->paint(scene.list(), surface.target(), surface.pixels(damage));
  }
}
BENCHMARK(firstFullPaint)->ArgName("scale")->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

// The same pixels again, as after the window was hidden: fonts, glyphs and shadows are known.
void fullRepaint(benchmark::State& state) {
  const ExampleBoard board;
  const Drawing drawing;
  const auto screen = screenOf(state);
  Scene scene(board.view(), *drawing.measurer);
  const auto damage = scene.update(ExampleBoard::start, screen.size);
  const Surface surface(scene.bounds(), screen.scale);
  for (auto _ : state) {
    drawing.painter->paint(scene.list(), surface.target(), surface.pixels(damage));
  }
}
BENCHMARK(fullRepaint)->ArgName("scale")->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace orvane::bench
