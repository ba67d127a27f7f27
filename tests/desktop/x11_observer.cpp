#include "x11_observer.h"

#include <poll.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace orvane::desktop_test {

namespace {

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};
template <class T>
using Reply = std::unique_ptr<T, Free>;

std::int16_t s16(int value) { return static_cast<std::int16_t>(value); }
std::uint16_t u16(int value) { return static_cast<std::uint16_t>(value); }

constexpr int escapeKey = 9;  // of the keyboard that Xvfb has

}  // namespace

Observer::Observer(const std::string& display)
    : connection_(xcb_connect(display.c_str(), nullptr)) {
  if (xcb_connection_has_error(connection_) != 0) {
    xcb_disconnect(connection_);
    throw std::runtime_error("cannot look at display " + display);
  }
  screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
}

Observer::~Observer() { xcb_disconnect(connection_); }

xcb_atom_t Observer::atom(const std::string& name) const {
  const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
      connection_,
      xcb_intern_atom(connection_, 0, u16(static_cast<int>(name.size())), name.c_str()), nullptr));
  return reply ? reply->atom : 0;
}

std::vector<std::uint32_t> Observer::numbers(xcb_window_t window,
                                             const std::string& property) const {
  const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
      connection_, xcb_get_property(connection_, 0, window, atom(property), 0, 0, 65536), nullptr));
  if (!reply || reply->format != 32) return {};
  const auto* values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {values, values + xcb_get_property_value_length(reply.get()) / 4};
}

std::string Observer::text(xcb_window_t window, xcb_atom_t property) const {
  const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
      connection_, xcb_get_property(connection_, 0, window, property, 0, 0, 1024), nullptr));
  if (!reply || reply->format != 8) return {};
  const auto* bytes = static_cast<const char*>(xcb_get_property_value(reply.get()));
  const std::string all(bytes,
                        static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
  return all.substr(0, all.find('\0'));
}

xcb_window_t Observer::windowManager() const {
  const auto named = numbers(root(), "_NET_SUPPORTING_WM_CHECK");
  if (named.empty()) return 0;
  return numbers(named[0], "_NET_SUPPORTING_WM_CHECK") == named ? named[0] : 0;
}

bool Observer::isComposited() const {
  const Reply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
      connection_, xcb_get_selection_owner(connection_, atom("_NET_WM_CM_S0")), nullptr));
  return reply && reply->owner != 0;
}

xcb_pixmap_t Observer::rootPicture() const {
  const auto named = numbers(root(), "_XROOTPMAP_ID");
  return named.empty() ? 0 : named[0];
}

std::vector<xcb_window_t> Observer::topLevels() const {
  const Reply<xcb_query_tree_reply_t> tree(
      xcb_query_tree_reply(connection_, xcb_query_tree(connection_, root()), nullptr));
  if (!tree) return {};
  const auto* children = xcb_query_tree_children(tree.get());
  return {children, children + xcb_query_tree_children_length(tree.get())};
}

void Observer::visit(xcb_window_t window, xcb_window_t topLevel, PixelPoint at,
                     std::vector<SeenWindow>& seen) const {
  const auto askedAttributes = xcb_get_window_attributes(connection_, window);
  const auto askedGeometry = xcb_get_geometry(connection_, window);
  const auto askedTree = xcb_query_tree(connection_, window);
  const Reply<xcb_get_window_attributes_reply_t> attributes(
      xcb_get_window_attributes_reply(connection_, askedAttributes, nullptr));
  const Reply<xcb_get_geometry_reply_t> geometry(
      xcb_get_geometry_reply(connection_, askedGeometry, nullptr));
  const Reply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(connection_, askedTree, nullptr));
  if (!attributes || !geometry || !tree) return;
  SeenWindow own{window,
                 topLevel,
                 text(window, XCB_ATOM_WM_CLASS),
                 text(window, XCB_ATOM_WM_NAME),
                 {at.x + geometry->x, at.y + geometry->y, geometry->width, geometry->height},
                 geometry->depth,
                 attributes->map_state == XCB_MAP_STATE_VIEWABLE,
                 attributes->override_redirect != 0};
  const PixelPoint corner{own.onRoot.x, own.onRoot.y};
  seen.push_back(std::move(own));
  const auto* children = xcb_query_tree_children(tree.get());
  for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
    visit(children[i], topLevel, corner, seen);
  }
}

std::vector<SeenWindow> Observer::windows() const {
  std::vector<SeenWindow> seen;
  for (const auto window : topLevels()) visit(window, window, {}, seen);
  return seen;
}

std::vector<SeenWindow> Observer::windowsOf(const std::string& instance) const {
  auto all = windows();
  std::erase_if(all, [&](const auto& window) { return window.instance != instance; });
  return all;
}

std::optional<SeenWindow> Observer::find(const std::string& instance,
                                         const std::string& name) const {
  for (auto& window : windowsOf(instance)) {
    if (window.name == name && window.isViewable) return window;
  }
  return std::nullopt;
}

Picture Observer::grab() const {
  const Reply<xcb_get_image_reply_t> reply(
      xcb_get_image_reply(connection_,
                          xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, root(), 0, 0,
                                        screen_->width_in_pixels, screen_->height_in_pixels, ~0U),
                          nullptr));
  if (!reply) return {};
  Picture picture{screen_->width_in_pixels, screen_->height_in_pixels, {}};
  picture.pixels.resize(static_cast<std::size_t>(picture.width) *
                        static_cast<std::size_t>(picture.height));
  std::memcpy(picture.pixels.data(), xcb_get_image_data(reply.get()), picture.pixels.size() * 4);
  return picture;
}

void Observer::movePointer(int x, int y) const {
  xcb_test_fake_input(connection_, XCB_MOTION_NOTIFY, 0, 0, root(), s16(x), s16(y), 0);
  sync();
}

void Observer::click(int x, int y, int button) const {
  movePointer(x, y);
  for (const int type : {XCB_BUTTON_PRESS, XCB_BUTTON_RELEASE}) {
    xcb_test_fake_input(connection_, static_cast<std::uint8_t>(type),
                        static_cast<std::uint8_t>(button), 0, root(), 0, 0, 0);
    sync();
  }
}

void Observer::pressEscape() const {
  for (const int type : {XCB_KEY_PRESS, XCB_KEY_RELEASE}) {
    xcb_test_fake_input(connection_, static_cast<std::uint8_t>(type), escapeKey, 0, root(), 0, 0,
                        0);
    sync();
  }
}

xcb_window_t Observer::openWindow(const PixelRect& where, std::uint32_t colour) const {
  const auto window = xcb_generate_id(connection_);
  xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, root(), s16(where.x), s16(where.y),
                    u16(where.width), u16(where.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                    screen_->root_visual, XCB_CW_BACK_PIXEL, &colour);
  // The place was chosen by the user, so that no window manager chooses another.
  std::array<std::uint32_t, 18> hints{};
  hints[0] = 1;
  hints[1] = static_cast<std::uint32_t>(where.x);
  hints[2] = static_cast<std::uint32_t>(where.y);
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NORMAL_HINTS,
                      XCB_ATOM_WM_SIZE_HINTS, 32, hints.size(), hints.data());
  xcb_map_window(connection_, window);
  sync();
  return window;
}

void Observer::closeWindow(xcb_window_t window) const {
  xcb_destroy_window(connection_, window);
  sync();
}

void Observer::showWorkspace(std::uint32_t number) const {
  tellManager("_NET_CURRENT_DESKTOP", number);
}

void Observer::showDesktop() const { tellManager("_NET_SHOWING_DESKTOP", 1); }

void Observer::setFullScreen(xcb_window_t window, bool isFull) const {
  constexpr std::uint32_t fromApplication = 1;
  tellManager(window, "_NET_WM_STATE",
              {isFull ? 1U : 0U, atom("_NET_WM_STATE_FULLSCREEN"), 0, fromApplication, 0});
}

void Observer::makeTranslucent(xcb_window_t window) const {
  constexpr std::uint32_t half = 0x80000000U;
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom("_NET_WM_WINDOW_OPACITY"),
                      XCB_ATOM_CARDINAL, 32, 1, &half);
  sync();
}

xcb_window_t Observer::activeWindow() const {
  const auto named = numbers(root(), "_NET_ACTIVE_WINDOW");
  return named.empty() ? 0 : named[0];
}

void Observer::tellManager(const std::string& message, std::uint32_t value) const {
  tellManager(root(), message, {value, 0, 0, 0, 0});
}

void Observer::tellManager(xcb_window_t about, const std::string& message,
                           const std::array<std::uint32_t, 5>& values) const {
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = about;
  event.type = atom(message);
  std::copy(values.begin(), values.end(), event.data.data32);
  xcb_send_event(connection_, 0, root(),
                 XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&event));
  sync();
}

void Observer::setRootPicture(std::uint32_t colour) const {
  // One pixel, since pictures repeat.
  const auto pixmap = xcb_generate_id(connection_);
  xcb_create_pixmap(connection_, screen_->root_depth, pixmap, root(), 1, 1);
  const auto gc = xcb_generate_id(connection_);
  xcb_create_gc(connection_, gc, pixmap, XCB_GC_FOREGROUND, &colour);
  const xcb_rectangle_t all{0, 0, 1, 1};
  xcb_poly_fill_rectangle(connection_, pixmap, gc, 1, &all);
  xcb_free_gc(connection_, gc);
  xcb_change_window_attributes(connection_, root(), XCB_CW_BACK_PIXMAP, &pixmap);
  xcb_clear_area(connection_, 0, root(), 0, 0, 0, 0);
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, root(), atom("_XROOTPMAP_ID"),
                      XCB_ATOM_PIXMAP, 32, 1, &pixmap);
  sync();
}

void Observer::setResources(const std::string& text) const {
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, root(), XCB_ATOM_RESOURCE_MANAGER,
                      XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(text.size()), text.data());
  sync();
}

void Observer::sync() const {
  const Reply<xcb_get_input_focus_reply_t> reply(
      xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

DamageWatch::DamageWatch(const std::string& display, xcb_window_t window) : observer_(display) {
  auto* connection = observer_.connection();
  firstEvent_ = xcb_get_extension_data(connection, &xcb_damage_id)->first_event;
  const Reply<xcb_damage_query_version_reply_t> version(xcb_damage_query_version_reply(
      connection, xcb_damage_query_version(connection, 1, 1), nullptr));
  xcb_damage_create(connection, xcb_generate_id(connection), window,
                    XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
  observer_.sync();
}

std::vector<Painting> DamageWatch::until(double seconds) {
  auto* connection = observer_.connection();
  pollfd readable{xcb_get_file_descriptor(connection), POLLIN, 0};
  for (double now = wallClock(); now < seconds; now = wallClock()) {
    const Reply<xcb_generic_event_t> event(xcb_poll_for_event(connection));
    if (!event) {
      poll(&readable, 1, static_cast<int>((seconds - now) * 1000) + 1);
      continue;
    }
    if ((event->response_type & 0x7f) != firstEvent_ + XCB_DAMAGE_NOTIFY) continue;
    const auto& damage = reinterpret_cast<const xcb_damage_notify_event_t&>(*event);
    seen_.push_back({now, {damage.area.x, damage.area.y, damage.area.width, damage.area.height}});
  }
  return seen_;
}

double wallClock() {
  using Seconds = std::chrono::duration<double>;
  return Seconds(std::chrono::system_clock::now().time_since_epoch()).count();
}

}  // namespace orvane::desktop_test
