// The windows of a Wayland desktop with a board that is easy to read back: a blue panel with the
// time of day (UTC) in shades of grey. It stands on the main screen, or on every one.
//
//   wayland_probe [--everywhere] [--takes-clicks] [--raised]
//
// Each SIGUSR1 takes it to its next shape: wider, then nothing at all, then as at first. It runs
// until it is told to end and then exits with 0.
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <set>
#include <string>

#include "desktop/block_painter.h"
#include "fakes/cell_measurer.h"
#include "foundation/subject.h"
#include "linux/mainloop/main_loop.h"
#include "linux/mainloop/periodic_schedule.h"
#include "linux/wayland/wayland_desktop.h"

namespace {

using namespace orvane;

std::string timeOfDay(Date now) {
  const auto second = static_cast<long long>(now.secondsSince1970) % 86400;
  char text[16];
  std::snprintf(text, sizeof text, "%02lld:%02lld:%02lld", second / 3600, second / 60 % 60,
                second % 60);
  return text;
}

enum class Extent { plain, wide, nothing };

// What all boards show. It tells of a change before the change is in place, as settings do.
class Model {
 public:
  Extent extent = Extent::plain;
  Subject<> willChange;

  void change() {
    willChange.send();
    switch (extent) {
      case Extent::plain:
        extent = Extent::wide;
        return;
      case Extent::wide:
        extent = Extent::nothing;
        return;
      case Extent::nothing:
        extent = Extent::plain;
        return;
    }
  }
};

class Board final : public RootView {
 public:
  explicit Board(Model& model) : model_(model) {}

  // 360 × 120 points at (60, 40), or 900 × 120; the digits begin at (100, 70) and are 30 wide.
  View body(Date now, Size) override {
    if (model_.extent == Extent::nothing) return {};
    const double width = model_.extent == Extent::wide ? 900 : 360;
    const Font digits{50, FontWeight::bold, FontDesign::standard, true};
    const View panel = text(timeOfDay(now))
                           .font(digits)
                           .lineLimit(1)
                           .padding({30, 40, 30, 0})
                           .frame(width, 120, Alignment::topLeading())
                           .background(filled(Shape::rectangle(), Color::srgb(0.1, 0.3, 0.9)));
    View::FlexibleFrame window;
    window.maxWidth = unlimitedWidth;
    window.maxHeight = unlimitedWidth;
    window.alignment = Alignment::topLeading();
    return panel.padding({40, 60, 0, 0}).frame(window);
  }
  Subscription onWillChange(std::function<void()> observer) override {
    return model_.willChange.subscribe(std::move(observer));
  }

 private:
  Model& model_;
};

struct Wishes {
  bool everywhere = false;
  bool takesClicks = false;
  bool raised = false;
};

// Keeps one window on each screen that should have one.
class Placement {
 public:
  Placement(WindowServer& server, Model& model, Wishes wishes)
      : server_(server), model_(model), wishes_(wishes) {}

  void place() {
    std::set<std::string> wanted;
    for (const auto& screen : targets()) {
      wanted.insert(screen.identity);
      auto& window = windows_[screen.identity];
      if (!window) window = makeWindow(screen);
      window->setFrame(screen.frame, true);
      window->orderBack();
    }
    std::erase_if(windows_, [&](const auto& entry) { return !wanted.contains(entry.first); });
  }

 private:
  [[nodiscard]] std::vector<NSScreen> targets() const {
    if (wishes_.everywhere) return server_.screens();
    const auto main = server_.mainScreen();
    return main ? std::vector{*main} : std::vector<NSScreen>{};
  }
  [[nodiscard]] std::shared_ptr<NSWindow> makeWindow(const NSScreen& screen) {
    auto window = server_.makeWindow(screen.frame, NSWindowStyleMask::fullSizeContentView,
                                     NSBackingStoreType::buffered, false);
    window->properties.ignoresMouseEvents = !wishes_.takesClicks;
    window->properties.level =
        wishes_.raised ? 0 : server_.windowLevelForKey(CGWindowLevelKey::desktopWindow);
    window->setContentView(std::make_unique<NSHostingView>(std::make_shared<Board>(model_)));
    return window;
  }

  WindowServer& server_;
  Model& model_;
  Wishes wishes_;
  std::map<std::string, std::shared_ptr<NSWindow>> windows_;
};

Wishes readWishes(int count, char** arguments) {
  Wishes wishes;
  for (int i = 1; i < count; ++i) {
    const std::string argument = arguments[i];
    if (argument == "--everywhere") {
      wishes.everywhere = true;
    } else if (argument == "--takes-clicks") {
      wishes.takesClicks = true;
    } else if (argument == "--raised") {
      wishes.raised = true;
    } else {
      std::fprintf(stderr, "wayland_probe: unknown argument %s\n", argument.c_str());
      std::exit(2);
    }
  }
  return wishes;
}

}  // namespace

int main(int count, char** arguments) {
  const Wishes wishes = readWishes(count, arguments);
  const auto loop = host::makeMainLoop();
  const auto schedule = host::makePeriodicSchedule();
  NotificationCenter notifications;
  const fakes::CellMeasurer measurer;
  desktop::BlockPainter painter;
  const auto onLost = [&](const DesktopLoss& loss) {
    std::fprintf(stderr, "wayland_probe: %s.\n", loss.what.c_str());
    loop->quit(3);
  };
  auto desktop =
      host::makeWaylandDesktop({*loop, *schedule, notifications, measurer, painter, onLost});
  if (!desktop.server) {
    std::fprintf(stderr, "wayland_probe: %s\n", desktop.failure.c_str());
    return 4;
  }
  Model model;
  Placement placement(*desktop.server, model, wishes);
  const auto screens = notifications.addObserver(NSApplicationDidChangeScreenParametersNotification,
                                                 [&] { placement.place(); });
  placement.place();
  const auto onUser = loop->onSignal(SIGUSR1, [&] { model.change(); });
  const auto onTerm = loop->onSignal(SIGTERM, [&] { loop->quit(0); });
  return loop->run();
}
