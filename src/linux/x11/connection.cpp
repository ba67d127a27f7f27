#include "linux/x11/connection.h"

#include <sys/socket.h>
#include <xcb/randr.h>
#include <xcb/screensaver.h>
#include <xcb/shm.h>
#include <xcb/xcbext.h>
#include <xcb/xfixes.h>

#include <cstdio>

#include "linux/x11/protocol_error.h"
#include "linux/xcb/answers.h"

namespace orvane::host::x11 {

namespace {

xcb_screen_t* screenAt(xcb_connection_t* connection, int number) {
  auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
  for (; screens.rem > 0; xcb_screen_next(&screens), --number) {
    if (number == 0) return screens.data;
  }
  return nullptr;
}

// Eight bits a channel, red on top: what our pictures are made of.
bool isOurLayout(const xcb_visualtype_t& visual) {
  return visual._class == XCB_VISUAL_CLASS_TRUE_COLOR && visual.red_mask == 0xff0000 &&
         visual.green_mask == 0xff00 && visual.blue_mask == 0xff;
}

template <class Accept>
xcb_visualid_t findVisual(const xcb_screen_t& screen, int depth, Accept accept) {
  auto depths = xcb_screen_allowed_depths_iterator(&screen);
  for (; depths.rem > 0; xcb_depth_next(&depths)) {
    if (depths.data->depth != depth) continue;
    auto visuals = xcb_depth_visuals_iterator(depths.data);
    for (; visuals.rem > 0; xcb_visualtype_next(&visuals)) {
      if (isOurLayout(*visuals.data) && accept(*visuals.data)) return visuals.data->visual_id;
    }
  }
  return 0;
}

bool isLocalSocket(xcb_connection_t* connection) {
  int domain = 0;
  socklen_t size = sizeof domain;
  return getsockopt(xcb_get_file_descriptor(connection), SOL_SOCKET, SO_DOMAIN, &domain, &size) ==
             0 &&
         domain == AF_UNIX;
}

bool isPresent(xcb_connection_t* connection, xcb_extension_t* extension) {
  const auto* data = xcb_get_extension_data(connection, extension);
  return data != nullptr && data->present != 0;
}

}  // namespace

Connection::Opened Connection::open(const std::string& displayName) {
  int screenNumber = 0;
  const char* name = displayName.empty() ? nullptr : displayName.c_str();
  // Made before its health is known: a failed connection must be disconnected all the same.
  std::unique_ptr<Connection> made(new Connection(xcb_connect(name, &screenNumber)));
  if (made->isLost()) {
    const char* shown = displayName.empty() ? std::getenv("DISPLAY") : name;
    if (shown == nullptr || *shown == 0) return {nullptr, "No X display is named by DISPLAY."};
    return {nullptr, "The X display " + std::string(shown) + " cannot be opened."};
  }
  auto reason = made->learnScreen(screenNumber);
  if (reason.empty()) reason = made->learnExtensions();
  if (!reason.empty()) return {nullptr, reason};
  made->learnSharedMemory();
  return {std::move(made), {}};
}

Connection::~Connection() { xcb_disconnect(handle_); }

bool Connection::isOurs(std::uint32_t resource) const {
  const auto* setup = xcb_get_setup(handle_);
  return setup != nullptr && (resource & ~setup->resource_id_mask) == setup->resource_id_base;
}

std::string Connection::learnScreen(int number) {
  screen_ = screenAt(handle_, number);
  if (screen_ == nullptr) return "The X display has no such screen.";
  rootFrame_ = {0, 0, screen_->width_in_pixels, screen_->height_in_pixels};
  const auto isRoots = [&](const auto& visual) { return visual.visual_id == screen_->root_visual; };
  if (findVisual(*screen_, screen_->root_depth, isRoots) == 0) {
    return "The X display does not show 24-bit colours.";
  }
  translucentVisual_ = findVisual(*screen_, 32, [](const auto&) { return true; });
  atoms_ = Atoms(handle_, number);
  return {};
}

std::string Connection::learnExtensions() {
  xcb_prefetch_extension_data(handle_, &xcb_xfixes_id);
  xcb_prefetch_extension_data(handle_, &xcb_randr_id);
  xcb_prefetch_extension_data(handle_, &xcb_shm_id);
  xcb_prefetch_extension_data(handle_, &xcb_screensaver_id);
  // Asked for now, so that nobody waits for it later.
  xcb_prefetch_maximum_request_length(handle_);
  if (!isPresent(handle_, &xcb_xfixes_id)) {
    return "The X display has no XFixes extension, which lets clicks pass through windows.";
  }
  xfixesEvents_ = xcb_get_extension_data(handle_, &xcb_xfixes_id)->first_event;
  const auto askedFixes = xcb_xfixes_query_version(handle_, 5, 0);
  if (isPresent(handle_, &xcb_randr_id)) {
    randrEvents_ = xcb_get_extension_data(handle_, &xcb_randr_id)->first_event;
    const auto version = xcb::answerTo<xcb_randr_query_version_reply_t>(
        handle_, xcb_randr_query_version(handle_, 1, 5));
    hasMonitors_ = version && (version->major_version > 1 || version->minor_version >= 5);
  }
  (void)xcb_get_maximum_request_length(handle_);
  const auto fixes = xcb::answerTo<xcb_xfixes_query_version_reply_t>(handle_, askedFixes);
  if (!fixes || fixes->major_version < 2) return "The X display's XFixes extension is too old.";
  return {};
}

// Shared memory needs one machine, and passing a descriptor over anything but a local socket would
// end the connection; the version alone does not tell.
void Connection::learnSharedMemory() {
  if (!isLocalSocket(handle_) || !isPresent(handle_, &xcb_shm_id)) return;
  const auto version =
      xcb::answerTo<xcb_shm_query_version_reply_t>(handle_, xcb_shm_query_version(handle_));
  if (!version) return;
  const bool takesDescriptors = version->major_version > 1 || version->minor_version >= 2;
  sharedMemory_ = takesDescriptors ? SharedMemory::fileDescriptors : SharedMemory::segments;
}

void Connection::deliver(const xcb_generic_event_t& event) {
  if (event.response_type == 0) return report(as<xcb_generic_error_t>(event));
  if (typeOf(event) == XCB_CONFIGURE_NOTIFY) {
    const auto& configured = as<xcb_configure_notify_event_t>(event);
    if (configured.window == root()) rootFrame_ = {0, 0, configured.width, configured.height};
  }
  events_.send(event);
}

void Connection::goOn() {
  isAwaited_ = false;
  takesMore_.send();
}

// All of them were asked for when the connection was opened.
std::vector<Extension> Connection::extensions() const {
  std::vector<Extension> found;
  for (auto* id : {&xcb_xfixes_id, &xcb_randr_id, &xcb_shm_id, &xcb_screensaver_id}) {
    const auto* told = xcb_get_extension_data(handle_, id);
    if (told == nullptr || told->present == 0) continue;
    found.push_back({id->name, told->major_opcode, told->first_error});
  }
  return found;
}

void Connection::report(const xcb_generic_error_t& error) {
  const std::string sentence = describe(error, extensions());
  if (reported_.insert(sentence).second) std::fprintf(stderr, "orvane: %s\n", sentence.c_str());
}

}  // namespace orvane::host::x11
