#include "linux/x11/screen_blanking.h"

#include <xcb/screensaver.h>

#include "linux/xcb/answers.h"

namespace orvane::host::x11 {

ScreenBlanking::ScreenBlanking(Connection& connection) {
  auto* handle = connection.handle();
  const auto* extension = xcb_get_extension_data(handle, &xcb_screensaver_id);
  if (extension == nullptr || extension->present == 0) return;
  const int notice = extension->first_event + XCB_SCREENSAVER_NOTIFY;
  events_ = connection.events().subscribe([this, notice](const xcb_generic_event_t& event) {
    if (typeOf(event) == notice) become(as<xcb_screensaver_notify_event_t>(event).state);
  });
  xcb_screensaver_select_input(handle, connection.root(), XCB_SCREENSAVER_EVENT_NOTIFY_MASK);
  const auto now = xcb::answerTo<xcb_screensaver_query_info_reply_t>(
      handle, xcb_screensaver_query_info(handle, connection.root()));
  if (now) become(now->state);
}

void ScreenBlanking::become(std::uint8_t state) {
  const bool isBlank = state == XCB_SCREENSAVER_STATE_ON || state == XCB_SCREENSAVER_STATE_CYCLE;
  if (isBlank == isBlank_) return;
  isBlank_ = isBlank;
  changed_.send();
}

}  // namespace orvane::host::x11
