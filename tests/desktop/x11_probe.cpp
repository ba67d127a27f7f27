// A small program around the X11 windows: shows a board with the last five digits of the wall
// clock's seconds on every screen, until SIGTERM. SIGUSR1 gives the board its other colour, SIGUSR2
// takes everything off it or puts it back.
//
//   --catches-clicks   the board takes clicks instead of letting them through
//   --raised           the board stands above ordinary windows
//   --one-space        the board stays on one desktop
//   --tells-paintings  "painted" is printed each time that something is, "changed" when a signal is
//                      served

#include <csignal>
#include <cstdio>
#include <map>
#include <memory>
#include <set>
#include <string>

#include "fakes/cell_measurer.h"
#include "foundation/subject.h"
#include "linux/mainloop/main_loop.h"
#include "linux/mainloop/periodic_schedule.h"
#include "linux/x11/x11_desktop.h"
#include "view/view.h"
#include "x11_block_painter.h"

namespace {

using namespace orvane;

// The board's state, shared by its views on all screens.
struct Board {
  bool isEmpty = false;
  bool isRed = false;
  Subject<> willChange;
};

class BoardView final : public RootView {
 public:
  explicit BoardView(Board& board) : board_(board) {}

  View body(Date now, Size) override {
    if (board_.isEmpty) return View();
    auto digits = std::to_string(static_cast<long long>(now.secondsSince1970) % 100000);
    digits.insert(0, 5 - digits.size(), '0');
    const Font font{60, FontWeight::bold, FontDesign::standard, true};
    const auto fill = board_.isRed ? Color::srgb(0.6, 0.1, 0.1, 0.5) : Color::srgb(0, 0, 0.6, 0.5);
    constexpr double everything = std::numeric_limits<double>::infinity();
    View::FlexibleFrame corner;
    corner.maxWidth = everything;
    corner.maxHeight = everything;
    corner.alignment = {HorizontalAlignment::leading, VerticalAlignment::top};
    return text(digits)
        .font(font)
        .lineLimit(1)
        .foreground(Color::white())
        .padding(20)
        .background(filled(Shape::rectangle(), fill))
        .padding(40)
        .frame(corner);
  }
  Subscription onWillChange(std::function<void()> observer) override {
    return board_.willChange.subscribe(std::move(observer));
  }

 private:
  Board& board_;
};

void say(const char* line) {
  std::puts(line);
  std::fflush(stdout);
}

class TellingPainter final : public Painter {
 public:
  void paint(const DisplayList& list, const PaintTarget& target,
             const std::vector<PixelRect>& damage) override {
    painter_.paint(list, target, damage);
    if (tells) say("painted");
  }

  bool tells = false;

 private:
  desktop_test::BlockPainter painter_;
};

struct Wishes {
  bool catchesClicks = false;
  bool isRaised = false;
  bool isOnOneSpace = false;
  bool tellsPaintings = false;
};

class Boards {
 public:
  Boards(WindowServer& server, Board& board, Wishes wishes)
      : server_(server), board_(board), wishes_(wishes) {}

  void syncToScreens() {
    std::set<std::string> seen;
    for (const auto& screen : server_.screens()) {
      seen.insert(screen.identity);
      auto& window = windows_[screen.identity];
      if (!window) window = makeWindow(screen);
      window->setFrame(screen.frame, true);
      window->orderBack();
    }
    std::erase_if(windows_, [&](const auto& entry) { return !seen.contains(entry.first); });
  }

 private:
  std::shared_ptr<NSWindow> makeWindow(const NSScreen& screen) {
    auto window = server_.makeWindow(screen.frame, NSWindowStyleMask::fullSizeContentView,
                                     NSBackingStoreType::buffered, false);
    window->properties.ignoresMouseEvents = !wishes_.catchesClicks;
    window->properties.level =
        wishes_.isRaised ? 0 : server_.windowLevelForKey(CGWindowLevelKey::desktopWindow);
    window->properties.collectionBehavior =
        wishes_.isOnOneSpace ? 0 : NSWindowCollectionBehavior::canJoinAllSpaces;
    window->setContentView(std::make_unique<NSHostingView>(std::make_shared<BoardView>(board_)));
    return window;
  }

  WindowServer& server_;
  Board& board_;
  Wishes wishes_;
  std::map<std::string, std::shared_ptr<NSWindow>> windows_;
};

Wishes wishesIn(int count, char** arguments) {
  Wishes wishes;
  for (int i = 1; i < count; ++i) {
    const std::string argument = arguments[i];
    wishes.catchesClicks |= argument == "--catches-clicks";
    wishes.isRaised |= argument == "--raised";
    wishes.isOnOneSpace |= argument == "--one-space";
    wishes.tellsPaintings |= argument == "--tells-paintings";
  }
  return wishes;
}

}  // namespace

int main(int argc, char** argv) {
  const auto loop = host::makeMainLoop();
  const auto schedule = host::makePeriodicSchedule();
  NotificationCenter notifications;
  fakes::CellMeasurer measurer;
  const auto wishes = wishesIn(argc, argv);
  TellingPainter painter;
  painter.tells = wishes.tellsPaintings;
  const auto onLost = [&](const DesktopLoss& loss) {
    std::fprintf(stderr, "x11_probe: %s.\n", loss.what.c_str());
    loop->quit(3);
  };
  auto desktop = host::makeX11Desktop({*loop, *schedule, notifications, measurer, painter, onLost});
  if (!desktop.server) {
    std::fprintf(stderr, "x11_probe: %s\n", desktop.failure.c_str());
    return 1;
  }
  Board board;
  Boards boards(*desktop.server, board, wishes);
  const auto screensChange =
      notifications.addObserver(NSApplicationDidChangeScreenParametersNotification, [&] {
        say("screens changed");
        boards.syncToScreens();
      });
  boards.syncToScreens();
  const auto toggling = [&](bool Board::*what) {
    return [&board, what, isTold = wishes.tellsPaintings] {
      board.willChange.send();
      board.*what = !(board.*what);
      if (isTold) say("changed");
    };
  };
  const auto onTerm = loop->onSignal(SIGTERM, [&] { loop->quit(0); });
  const auto onRed = loop->onSignal(SIGUSR1, toggling(&Board::isRed));
  const auto onEmpty = loop->onSignal(SIGUSR2, toggling(&Board::isEmpty));
  return loop->run();
}
