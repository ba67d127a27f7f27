#include "linux/hotkey/x11_grab.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <chrono>
#include <compare>
#include <functional>
#include <iostream>
#include <optional>
#include <set>
#include <system_error>
#include <utility>
#include <vector>

#include "linux/hotkey/key_names.h"
#include "linux/hotkey/press_counter.h"
#include "linux/hotkey/readable_watch.h"
#include "linux/hotkey/x11_keys.h"
#include "linux/xcb/answers.h"
#include "linux/xcb/attempt.h"

namespace orvane::host::hotkey {
namespace {

struct Disconnect {
  void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};
using ConnectionPtr = std::unique_ptr<xcb_connection_t, Disconnect>;

bool isLost(const ConnectionPtr& connection) {
  return !connection || xcb_connection_has_error(connection.get()) != 0;
}

// One grab that the server granted.
struct Hold {
  xcb_window_t root = 0;
  std::uint16_t modifiers = 0;
  xcb_keycode_t key = 0;

  friend auto operator<=>(const Hold&, const Hold&) = default;
};

struct GrabOptions {
  Combination combination;
  xcb_keysym_t keysym = 0;
  Pressed pressed;
  std::function<void()> lost;  // may destroy the grab
};

// The grabs on one connection, for as long as the server stays and answers.
class Grab {
 public:
  Grab(ConnectionPtr connection, GrabOptions options)
      : connection_(std::move(connection)), options_(std::move(options)) {
    grab();
    handleEvents();  // what came along with the answers wakes nobody
    source_.emplace(xcb_get_file_descriptor(connection_.get()), [this] { onReadable(); });
  }

 private:
  void grab() {
    auto* connection = connection_.get();
    const auto keys = KeyMap::read(connection);
    if (!keys) return;
    const auto codes = keys->keysOfLetter(options_.keysym);
    std::set<Hold> wanted;
    for (auto root = xcb_setup_roots_iterator(xcb_get_setup(connection)); root.rem > 0;
         xcb_screen_next(&root)) {
      for (const auto code : codes) {
        for (const auto mix : modifierMixes(options_.combination, *keys)) {
          wanted.insert({root.data->root, mix, code});
        }
      }
    }
    change(wanted);
  }

  // What stays is left alone: the key may be down just now, and a change of the mapping is often
  // told only because another keyboard is typed on.
  void change(const std::set<Hold>& wanted) {
    auto* connection = connection_.get();
    const auto before = std::exchange(held_, {});
    for (const auto& hold : before) {
      if (wanted.contains(hold)) {
        held_.insert(hold);
      } else {
        xcb_ungrab_key(connection, hold.key, hold.root, hold.modifiers);
        counter_.forget();
      }
    }
    std::vector<std::pair<Hold, xcb_void_cookie_t>> requests;
    for (const auto& hold : wanted) {
      if (held_.contains(hold)) continue;
      requests.emplace_back(hold,
                            xcb_grab_key_checked(connection, 0, hold.root, hold.modifiers, hold.key,
                                                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
    if (xcb::settle(connection)) takeAnswers(requests);
  }

  // Some of a combination's mixes may be free although another program holds the plain one; one
  // refusal is enough to say so, once.
  void takeAnswers(const std::vector<std::pair<Hold, xcb_void_cookie_t>>& requests) {
    bool refused = false;
    for (const auto& [hold, request] : requests) {
      const xcb::Reply<xcb_generic_error_t> error(xcb_request_check(connection_.get(), request));
      if (!error) held_.insert(hold);
      refused = refused || error;
    }
    if (!refused || std::exchange(toldRefusal_, true)) return;
    std::cerr << "orvane: Another program holds the key that toggles focus mode.\n";
  }

  // Whoever is told may destroy the grab, so telling comes last.
  void onReadable() {
    const int presses = handleEvents();
    if (isLost(connection_)) {
      source_.reset();  // it would be readable for ever
      const auto lost = options_.lost;
      return lost();
    }
    const auto pressed = options_.pressed;
    for (int press = 0; press < presses; ++press) pressed();
  }

  // A change of the mapping is told by several events at once. Grabbing anew waits for answers, and
  // may bring further events along.
  int handleEvents() {
    int presses = 0;
    bool isOutdated = false;
    do {
      if (std::exchange(isOutdated, false)) grab();
      while (const xcb::Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
        if (counter_.isPress(*event)) ++presses;
        isOutdated = isOutdated || (event->response_type & 0x7F) == XCB_MAPPING_NOTIFY;
      }
    } while (isOutdated);
    return presses;
  }

  const ConnectionPtr connection_;
  const GrabOptions options_;
  std::set<Hold> held_;
  PressCounter counter_;
  bool toldRefusal_ = false;
  std::optional<ReadableWatch> source_;
};

class X11Grab final : public HotKeySource {
 public:
  X11Grab(std::string display, GrabOptions options, MainActor& mainActor)
      : display_(std::move(display)), options_(std::move(options)), mainActor_(mainActor) {
    options_.lost = [this] { tryAgain(); };
    connect();
  }

 private:
  // A server that lets us in and then says nothing is waited for aside.
  void connect() {
    try {
      attempt_.emplace(
          [display = display_] { return ConnectionPtr(xcb_connect(display.c_str(), nullptr)); });
      connected_.emplace(attempt_->done().descriptor(), [this] { begin(); });
    } catch (const std::system_error&) {
      tryAgain();
    }
  }

  void begin() {
    auto connection = attempt_->take();
    connected_.reset();
    attempt_.reset();
    if (isLost(connection)) return tryAgain();
    delay_ = kFirstDelay;
    grab_.emplace(std::move(connection), options_);
  }

  void tryAgain() {
    retry_ = mainActor_.after(delay_, [this] {
      grab_.reset();
      connect();
    });
    delay_ = std::min(delay_ * 2, kLongestDelay);
  }

  static constexpr std::chrono::seconds kFirstDelay{1};
  static constexpr std::chrono::seconds kLongestDelay{30};

  const std::string display_;
  GrabOptions options_;
  MainActor& mainActor_;
  std::chrono::seconds delay_ = kFirstDelay;
  std::optional<xcb::Attempt<ConnectionPtr>> attempt_;
  std::optional<ReadableWatch> connected_;
  std::optional<Grab> grab_;
  Subscription retry_;
};

}  // namespace

std::unique_ptr<HotKeySource> makeX11Grab(const std::string& display, Combination combination,
                                          MainActor& mainActor, Pressed pressed) {
  const auto keysym = keysymOf(combination.keyCode);
  if (display.empty() || !keysym) return nullptr;
  return std::make_unique<X11Grab>(
      display, GrabOptions{combination, *keysym, std::move(pressed), nullptr}, mainActor);
}

}  // namespace orvane::host::hotkey
