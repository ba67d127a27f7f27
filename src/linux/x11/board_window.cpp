#include "linux/x11/board_window.h"

#include <unistd.h>
#include <xcb/xfixes.h>

#include <array>
#include <string>
#include <vector>

#include "linux/x11/properties.h"

namespace orvane::host::x11 {

namespace {

constexpr const char* applicationId = "org.orvane.Orvane";

constexpr std::uint32_t watchedEvents =
    XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_VISIBILITY_CHANGE;

Atom atomOf(WindowType type) {
  switch (type) {
    case WindowType::desktop:
      return Atom::netWmWindowTypeDesktop;
    case WindowType::dock:
      return Atom::netWmWindowTypeDock;
    case WindowType::splash:
      return Atom::netWmWindowTypeSplash;
    case WindowType::utility:
      return Atom::netWmWindowTypeUtility;
    case WindowType::normal:
      break;
  }
  return Atom::netWmWindowTypeNormal;
}

std::string hostName() {
  std::array<char, 256> name{};
  return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

}  // namespace

BoardWindow::BoardWindow(Connection& connection, const BoardStyle& style, const PixelRect& area,
                         std::uint32_t desktop)
    : connection_(connection), style_(style), area_(area) {
  create();
  describeToManager(desktop);
}

BoardWindow::~BoardWindow() {
  xcb_free_gc(connection_.handle(), gc_);
  xcb_destroy_window(connection_.handle(), id_);
  if (colormap_ != 0) xcb_free_colormap(connection_.handle(), colormap_);
}

int BoardWindow::depth() const {
  return style_.isTranslucent ? 32 : connection_.screen().root_depth;
}

// A translucent window begins clear. An opaque one has no background, so that the server leaves
// what was there until the first picture comes: neither flashes.
void BoardWindow::create() {
  auto* handle = connection_.handle();
  const auto visual =
      style_.isTranslucent ? connection_.translucentVisual() : connection_.screen().root_visual;
  std::vector<std::uint32_t> values;
  std::uint32_t mask = XCB_CW_BACK_PIXMAP;
  values.push_back(XCB_BACK_PIXMAP_NONE);
  if (style_.isTranslucent) {
    mask = XCB_CW_BACK_PIXEL;
    values.back() = 0;
  }
  mask |= XCB_CW_BORDER_PIXEL | XCB_CW_BIT_GRAVITY | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK |
          XCB_CW_COLORMAP;
  colormap_ = xcb_generate_id(handle);
  xcb_create_colormap(handle, XCB_COLORMAP_ALLOC_NONE, colormap_, connection_.root(), visual);
  values.insert(values.end(), {0, XCB_GRAVITY_NORTH_WEST, style_.hints.overrideRedirect ? 1U : 0U,
                               watchedEvents, colormap_});
  id_ = xcb_generate_id(handle);
  xcb_create_window(handle, static_cast<std::uint8_t>(depth()), id_, connection_.root(),
                    coordinate(area_.x), coordinate(area_.y), extent(area_.width),
                    extent(area_.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, visual, mask,
                    values.data());
  gc_ = xcb_generate_id(handle);
  const std::uint32_t noExposures = 0;
  xcb_create_gc(handle, gc_, id_, XCB_GC_GRAPHICS_EXPOSURES, &noExposures);
}

void BoardWindow::describeToManager(std::uint32_t desktop) const {
  const auto set = [&](Atom name, xcb_atom_t type, std::vector<std::uint32_t> values) {
    setNumbers(connection_, id_, connection_.atom(name), type, values);
  };
  const std::string id = applicationId;
  setBytes(connection_, id_, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, id + '\0' + id + '\0');
  setBytes(connection_, id_, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, "Orvane");
  setBytes(connection_, id_, connection_.atom(Atom::netWmName), connection_.atom(Atom::utf8String),
           "Orvane");
  setBytes(connection_, id_, XCB_ATOM_WM_CLIENT_MACHINE, XCB_ATOM_STRING, hostName());
  set(Atom::netWmPid, XCB_ATOM_CARDINAL, {static_cast<std::uint32_t>(getpid())});
  set(Atom::netWmWindowType, XCB_ATOM_ATOM, {connection_.atom(atomOf(style_.hints.type))});
  set(Atom::netWmDesktop, XCB_ATOM_CARDINAL, {desktop});
  // Being asked to close must not mean being killed.
  set(Atom::wmProtocols, XCB_ATOM_ATOM, {connection_.atom(Atom::wmDeleteWindow)});
  constexpr std::uint32_t decorationsGiven = 2;
  set(Atom::motifWmHints, connection_.atom(Atom::motifWmHints), {decorationsGiven, 0, 0, 0, 0});
  constexpr std::uint32_t inputGiven = 1;
  setNumbers(connection_, id_, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS,
             {inputGiven, 0, 0, 0, 0, 0, 0, 0, 0});
  describeState(desktop);
  describePlace();
}

void BoardWindow::describeState(std::uint32_t desktop) const {
  std::vector<std::uint32_t> state = {connection_.atom(Atom::netWmStateSkipTaskbar),
                                      connection_.atom(Atom::netWmStateSkipPager)};
  if (desktop == allDesktops) state.push_back(connection_.atom(Atom::netWmStateSticky));
  if (style_.hints.below) state.push_back(connection_.atom(Atom::netWmStateBelow));
  if (style_.hints.above) state.push_back(connection_.atom(Atom::netWmStateAbove));
  setNumbers(connection_, id_, connection_.atom(Atom::netWmState), XCB_ATOM_ATOM, state);
}

// WM_NORMAL_HINTS: the place was chosen by the user, and means the window itself rather than a
// frame around it.
void BoardWindow::describePlace() const {
  constexpr std::uint32_t userPosition = 1U << 0U;
  constexpr std::uint32_t userSize = 1U << 1U;
  constexpr std::uint32_t programPosition = 1U << 2U;
  constexpr std::uint32_t programSize = 1U << 3U;
  constexpr std::uint32_t windowGravity = 1U << 9U;
  std::vector<std::uint32_t> hints(18, 0);
  hints[0] = userPosition | userSize | programPosition | programSize | windowGravity;
  hints[1] = static_cast<std::uint32_t>(area_.x);
  hints[2] = static_cast<std::uint32_t>(area_.y);
  hints[3] = static_cast<std::uint32_t>(area_.width);
  hints[4] = static_cast<std::uint32_t>(area_.height);
  hints[17] = XCB_GRAVITY_STATIC;
  setNumbers(connection_, id_, XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, hints);
}

void BoardWindow::show() {
  if (isWanted_) return;
  isWanted_ = true;
  xcb_map_window(connection_.handle(), id_);
}

void BoardWindow::place(const PixelRect& area) {
  area_ = area;
  describePlace();
  const std::array<std::uint32_t, 4> values = {
      static_cast<std::uint32_t>(area.x), static_cast<std::uint32_t>(area.y),
      static_cast<std::uint32_t>(area.width), static_cast<std::uint32_t>(area.height)};
  xcb_configure_window(connection_.handle(), id_,
                       XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                           XCB_CONFIG_WINDOW_HEIGHT,
                       values.data());
}

void BoardWindow::setPassesClicks(bool passes) {
  auto* handle = connection_.handle();
  if (!passes) {
    xcb_xfixes_set_window_shape_region(handle, id_, XCB_SHAPE_SK_INPUT, 0, 0, XCB_NONE);
    return;
  }
  const auto nothing = xcb_generate_id(handle);
  xcb_xfixes_create_region(handle, nothing, 0, nullptr);
  xcb_xfixes_set_window_shape_region(handle, id_, XCB_SHAPE_SK_INPUT, 0, 0, nothing);
  xcb_xfixes_destroy_region(handle, nothing);
}

void BoardWindow::tellManager(Atom message, const std::uint32_t (&values)[5]) const {
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = id_;
  event.type = connection_.atom(message);
  std::copy(std::begin(values), std::end(values), event.data.data32);
  xcb_send_event(connection_.handle(), 0, connection_.root(),
                 XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&event));
}

// The manager speaks for a window that it manages; the property alone would be ignored.
void BoardWindow::setDesktop(std::uint32_t desktop) {
  constexpr std::uint32_t fromApplication = 1;
  tellManager(Atom::netWmDesktop, {desktop, fromApplication, 0, 0, 0});
}

// A managed window need not have the same parent as the other, so the server cannot be told about
// the two of them.
void BoardWindow::raiseAbove(xcb_window_t sibling, bool managerTakesWish) {
  const std::array<std::uint32_t, 2> values = {sibling, XCB_STACK_MODE_ABOVE};
  if (style_.hints.overrideRedirect) {
    // A window manager that comes or goes at this moment may have put the sibling elsewhere, which
    // is nothing to report: the order is seen to again when it has settled.
    const auto asked = xcb_configure_window_checked(
        connection_.handle(), id_, XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE,
        values.data());
    xcb_discard_reply(connection_.handle(), asked.sequence);
  } else if (managerTakesWish) {
    constexpr std::uint32_t fromPager = 2;  // the only source that managers heed for this
    tellManager(Atom::netRestackWindow, {fromPager, sibling, XCB_STACK_MODE_ABOVE, 0, 0});
  } else {
    xcb_configure_window(connection_.handle(), id_, XCB_CONFIG_WINDOW_STACK_MODE, &values[1]);
  }
}

void BoardWindow::lower() {
  const std::uint32_t below = XCB_STACK_MODE_BELOW;
  xcb_configure_window(connection_.handle(), id_, XCB_CONFIG_WINDOW_STACK_MODE, &below);
}

void BoardWindow::setBlurBehind(const std::vector<PixelRect>& parts) {
  if (parts == blurred_) return;
  blurred_ = parts;
  const auto name = connection_.atom(Atom::kdeBlurBehindRegion);
  if (parts.empty()) {
    // An empty property would stand for the whole window.
    xcb_delete_property(connection_.handle(), id_, name);
    return;
  }
  std::vector<std::uint32_t> numbers;
  for (const auto& part : parts) {
    for (const int number : {part.x, part.y, part.width, part.height}) {
      numbers.push_back(static_cast<std::uint32_t>(number));
    }
  }
  setNumbers(connection_, id_, name, XCB_ATOM_CARDINAL, numbers);
}

void BoardWindow::put(const SharedPixels& picture, const PixelRect& part) {
  rest_.add(part);
  if (!connection_.isAwaited()) putRest(picture);
}

void BoardWindow::putRest(const SharedPixels& picture) {
  while (!rest_.isEmpty()) {
    const auto part = rest_.first();
    const auto left = picture.put(id_, gc_, depth(), part, {part.x, part.y});
    rest_.replaceFirst(left);
    if (!left.isEmpty()) return connection_.tellWhenItTakesMore();
  }
}

}  // namespace orvane::host::x11
