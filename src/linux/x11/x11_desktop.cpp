#include "linux/x11/x11_desktop.h"

#include <array>
#include <utility>

#include "linux/x11/desktop_window.h"
#include "linux/x11/event_source.h"
#include "linux/x11/first_contact.h"
#include "linux/x11/window_level.h"

namespace orvane::host {

namespace {

using namespace x11;

// Every part that looks at the root window's events looks at the same selection, since a client has
// only one.
Connection& watchingRoot(Connection& connection) {
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  xcb_change_window_attributes(connection.handle(), connection.root(), XCB_CW_EVENT_MASK, &events);
  return connection;
}

class Desktop final : public WindowServer {
 public:
  Desktop(std::unique_ptr<Connection> connection, const X11Neighbours& around)
      : around_(around),
        connection_(std::move(connection)),
        screens_(watchingRoot(*connection_), around.mainActor, around.notifications),
        stack_(*connection_, around.mainActor),
        desktop_(*connection_, around.mainActor, stack_),
        rootPicture_(*connection_, around.mainActor),
        blanking_(*connection_),
        fullScreen_(*connection_, around.mainActor),
        sight_({screens_, blanking_, fullScreen_, around.session}),
        source_(*connection_, [this] { lost(); }) {
    if (around_.session) around_.session->follow();
  }

  [[nodiscard]] std::vector<NSScreen> screens() const override { return screens_.screens(); }
  [[nodiscard]] std::optional<NSScreen> mainScreen() const override {
    return screens_.mainScreen();
  }
  [[nodiscard]] std::shared_ptr<NSWindow> makeWindow(Rect contentRect, unsigned, NSBackingStoreType,
                                                     bool) override {
    const Surroundings surroundings{*connection_,     around_.mainActor,
                                    around_.schedule, around_.measurer,
                                    around_.painter,  screens_,
                                    stack_,           desktop_,
                                    rootPicture_,     sight_};
    return std::make_shared<DesktopWindow>(surroundings, contentRect);
  }
  [[nodiscard]] std::int32_t windowLevelForKey(CGWindowLevelKey key) const override {
    return levelForKey(key);
  }

 private:
  void lost() {
    // In a turn of its own, since whoever is told may take this desktop down.
    around_.mainActor.post([onLost = around_.onConnectionLost] {
      if (onLost) onLost({"The connection to the X server is lost", false});
    });
  }

  X11Neighbours around_;
  std::unique_ptr<Connection> connection_;
  ScreenList screens_;
  ClientStack stack_;
  DesktopWatch desktop_;
  RootPicture rootPicture_;
  ScreenBlanking blanking_;
  FullScreenWatch fullScreen_;
  Sight sight_;
  EventSource source_;
};

}  // namespace

X11Desktop makeX11Desktop(const X11Neighbours& neighbours) {
  auto opened = openWithin(neighbours.patience, {}, neighbours.isInVain);
  if (!opened.connection) return {nullptr, std::move(opened.reason)};
  return {std::make_unique<Desktop>(std::move(opened.connection), neighbours), {}};
}

}  // namespace orvane::host
