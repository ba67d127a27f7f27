#include "linux/x11/desktop_window.h"

#include <cmath>

#include "linux/x11/glass_area.h"
#include "linux/x11/properties.h"
#include "linux/x11/window_area.h"
#include "linux/x11/window_level.h"
#include "linux/xcb/answers.h"

namespace orvane::host::x11 {

namespace {

constexpr int patienceWithShowing = 3;
constexpr Duration patienceWithManager = std::chrono::seconds(3);

PixelPoint cornerOf(const Rect& frame, double scale) {
  return {static_cast<int>(std::lround(frame.x * scale)),
          static_cast<int>(std::lround(frame.y * scale))};
}

}  // namespace

DesktopWindow::DesktopWindow(const Surroundings& around, Rect contentRect)
    : around_(around),
      frame_(contentRect),
      canvas_(around.connection, around.painter, around.rootPicture) {
  events_ = around_.connection.events().subscribe([this](const auto& event) { handle(event); });
  roomToSend_ = around_.connection.takesMore().subscribe([this] {
    if (board_ && canvas_.isReady() && !isOutOfSight()) board_->putRest(canvas_.pixels());
  });
  desktopChanges_ = around_.desktop.changed().subscribe([this] { desktopChanged(); });
  stackChanges_ = around_.stack.changed().subscribe([this] { stackChanged(); });
  pictureChanges_ = around_.rootPicture.changed().subscribe([this] { pictureChanged(); });
  sightChanges_ = around_.sight.changed().subscribe([this] { sightChanged(); });
}

void DesktopWindow::setFrame(Rect frame, bool) {
  frame_ = frame;
  if (isOrderedIn_) place();
}

void DesktopWindow::setContentView(std::unique_ptr<NSHostingView> view) {
  scene_.reset();
  contentChanges_ = {};
  lastInstant_.reset();
  content_ = std::move(view);
  if (content_ && content_->rootView) {
    scene_ = std::make_unique<Scene>(content_->rootView, around_.measurer);
    contentChanges_ = content_->rootView->onWillChange([this] { contentWillChange(); });
  }
  canvas_.drop();
  if (isOrderedIn_) place();
}

void DesktopWindow::orderBack() {
  isOrderedIn_ = true;
  place();
}

void DesktopWindow::close() {
  isOrderedIn_ = false;
  removeBoard();
  area_.reset();
  lastInstant_.reset();
  followSight();
}

void DesktopWindow::place() {
  const double scale = around_.screens.scale();
  const auto corner = cornerOf(frame_, scale);
  if (scale != scale_ || corner != corner_) canvas_.drop();
  if (scale != scale_) area_.reset();
  scale_ = scale;
  corner_ = corner;
  if (board_ && board_->style() != wantedStyle()) board_.reset();
  if (board_) {
    board_->setPassesClicks(properties.ignoresMouseEvents);
    if (joinsAllSpaces() != joinedAllSpaces_) board_->setDesktop(wantedDesktop());
    joinedAllSpaces_ = joinsAllSpaces();
  }
  if (!around_.sight.isNone()) render(currentInstant());
  followSight();
}

BoardStyle DesktopWindow::wantedStyle() const {
  const auto& kind = around_.desktop.kind();
  BoardStyle style;
  style.isTranslucent = kind.isCompositing && around_.connection.translucentVisual() != 0;
  style.hints = isDesktopLevel(properties.level)
                    ? hintsFor(kind.managerName, kind.hasDesktopWindow,
                               joinsAllSpaces() ? Workspaces::all : Workspaces::one)
                    : hintsForRaised(kind.managerName);
  style.managerWindow = kind.managerWindow;
  return style;
}

bool DesktopWindow::joinsAllSpaces() const {
  return (properties.collectionBehavior & NSWindowCollectionBehavior::canJoinAllSpaces) != 0;
}

std::uint32_t DesktopWindow::wantedDesktop() const {
  if (joinsAllSpaces()) return allDesktops;
  const auto& connection = around_.connection;
  return numberProperty(connection, connection.root(), connection.atom(Atom::netCurrentDesktop))
      .value_or(0);
}

void DesktopWindow::makeBoard() {
  joinedAllSpaces_ = joinsAllSpaces();
  presence_ = {};
  corrections_ = 0;
  const auto& extent = canvas_.extent();
  board_ = std::make_unique<BoardWindow>(
      around_.connection, wantedStyle(),
      PixelRect{extent.screen.x + extent.area.x, extent.screen.y + extent.area.y, extent.area.width,
                extent.area.height},
      wantedDesktop());
  board_->setPassesClicks(properties.ignoresMouseEvents);
  putAtBottom();
}

void DesktopWindow::showBoard() {
  if (board_->isWanted()) return;
  board_->show();
  showing_ = around_.actor.after(patienceWithManager, [this] { beginAnewIfNotShown(); });
}

// A window manager that has just come may have missed that we wished to be shown. One that goes on
// keeping us off the screen means it.
void DesktopWindow::beginAnewIfNotShown() {
  const bool isShown = !board_ || !board_->isWanted() || presence_.isMapped();
  if (isShown || ++attempts_ > patienceWithShowing) return;
  board_.reset();
  canvas_.drop();
  place();
}

// Without a window manager the order is ours to keep.
void DesktopWindow::putAtBottom() {
  const auto& hints = board_->style().hints;
  if (!hints.overrideRedirect || hints.above) return;
  if (const auto desktop = around_.stack.findUnmanagedDesktop())
    return board_->raiseAbove(*desktop, false);
  board_->lower();
}

void DesktopWindow::render(Date now) {
  if (!scene_ || around_.connection.isLost()) return;
  lastInstant_ = now;
  const auto damage = scene_->update(now, frame_.size());
  const auto screen = pixelsCovering({0, 0, frame_.width, frame_.height}, scale_);
  const auto needed = intersectionOf(pixelsCovering(scene_->bounds(), scale_), screen);
  if (needed.isEmpty()) return removeBoard();
  const bool areaChanged = area_.update(windowAreaFor(needed, screen), screen, now);
  if (isOutOfSight()) return standUnseen();
  if (areaChanged || !canvas_.isReady() || !board_) return renderAll(area_.area());
  std::vector<PixelRect> parts;
  parts.reserve(damage.size());
  for (const auto& rect : damage) parts.push_back(pixelsCovering(rect, scale_));
  paint(parts);
  showBoard();
}

// Rather than withdrawn: of a window that is, its manager forgets where it belongs.
void DesktopWindow::removeBoard() {
  board_.reset();
  presence_ = {};
  canvas_.drop();
}

// The window on the server, and the memory of its picture, begin anew.
void DesktopWindow::renderAll(const PixelRect& area) {
  canvas_.begin({area, corner_, !wantedStyle().isTranslucent});
  if (!board_) makeBoard();
  placeBoard();
  // First, since what is drawn on a window that is not there is lost until the server asks for it.
  showBoard();
  paint({area});
  // At once: a picture that is new need not wait for whatever else this turn of the loop has to do.
  if (xcb::takesRequests(around_.connection.handle())) xcb_flush(around_.connection.handle());
}

// What covers it, or had it put aside, need not do so at another place.
void DesktopWindow::standUnseen() {
  canvas_.drop();
  if (board_) placeBoard();
}

void DesktopWindow::placeBoard() {
  const auto& area = area_.area();
  const PixelRect onRoot{corner_.x + area.x, corner_.y + area.y, area.width, area.height};
  if (board_->area() == onRoot) return;
  board_->place(onRoot);
  putsAllWhenPlaced_ = true;
  corrections_ = 0;
}

void DesktopWindow::paint(const std::vector<PixelRect>& parts) {
  for (const auto& part : canvas_.paint(scene_->list(), scale_, parts)) {
    board_->put(canvas_.pixels(), part);
  }
  const bool blurs = around_.desktop.kind().blursBehind && board_->style().isTranslucent;
  board_->setBlurBehind(blurs ? glassWithin(canvas_.extent().area, scene_->list(), scale_)
                              : std::vector<PixelRect>{});
}

// A change between two beats is drawn with the instant of the last one, so that it does not make a
// second pass early.
Date DesktopWindow::currentInstant() const {
  const auto now = around_.actor.now();
  const bool isBetweenBeats = lastInstant_ && *lastInstant_ <= now && now - *lastInstant_ < 1;
  return isBetweenBeats ? *lastInstant_ : now;
}

bool DesktopWindow::isInSight() const {
  if (!isOrderedIn_ || !scene_ || around_.sight.isNone()) return false;
  // A window that has nothing to draw is not on the server, but what it shows may begin to be.
  const bool isAbsentByChoice = !board_ || !board_->isWanted();
  return isAbsentByChoice ||
         (presence_.isMapped() && !presence_.isObscured() && !isBehindFullScreen());
}

bool DesktopWindow::isOutOfSight() const {
  if (around_.sight.isNone()) return true;
  if (!board_ || !board_->isWanted()) return false;
  return presence_.isPutAside() ||
         (presence_.isMapped() && (presence_.isObscured() || isBehindFullScreen()));
}

bool DesktopWindow::isBehindFullScreen() const {
  return isDesktopLevel(properties.level) && around_.sight.isBehindFullScreen(board_->area());
}

void DesktopWindow::sightChanged() {
  if (isInSight() && !beat_) render(currentInstant());
  followSight();
}

void DesktopWindow::followSight() {
  if (!isInSight()) {
    beat_ = {};
    rebuild_ = {};
    return;
  }
  if (beat_) return;
  beat_ = around_.schedule.everySecond([this](Date now) {
    render(now);
    followSight();
  });
}

void DesktopWindow::contentWillChange() {
  // What is out of sight is drawn whole when it comes back.
  if (!isInSight()) return;
  rebuild_ = around_.actor.after(Duration::zero(), [this] {
    render(currentInstant());
    followSight();
  });
}

}  // namespace orvane::host::x11
