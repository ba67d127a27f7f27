#include "linux/hotkey/x11_grab.h"

#include <glib-unix.h>
#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>

#include <algorithm>
#include <chrono>
#include <compare>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "linux/hotkey/key_names.h"
#include "platform/event_hot_keys.h"

namespace orvane::host::hotkey {
namespace {

struct Disconnect {
  void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};
struct FreeSymbols {
  void operator()(xcb_key_symbols_t* symbols) const { xcb_key_symbols_free(symbols); }
};
struct FreeReply {
  void operator()(void* reply) const { std::free(reply); }
};
template <class T>
using ReplyPtr = std::unique_ptr<T, FreeReply>;
using ConnectionPtr = std::unique_ptr<xcb_connection_t, Disconnect>;

constexpr xcb_keysym_t kNumLock = 0xFF7F;
constexpr xcb_keysym_t kScrollLock = 0xFF14;
// The Z of an ANSI keyboard as the kernel's and all of today's X servers' numbering has it.
constexpr xcb_keycode_t kAnsiZ = 52;

// The keycodes that give a keysym without modifiers, in the mapping of now.
std::vector<xcb_keycode_t> keycodesOf(xcb_key_symbols_t* symbols, xcb_keysym_t keysym) {
  std::vector<xcb_keycode_t> codes;
  const ReplyPtr<xcb_keycode_t> found(xcb_key_symbols_get_keycode(symbols, keysym));
  for (const auto* code = found.get(); code && *code != XCB_NO_SYMBOL; ++code) {
    codes.push_back(*code);
  }
  return codes;
}

// The modifier that a key such as NumLock sets; 0 where none does.
std::uint16_t maskOf(xcb_connection_t* connection, xcb_key_symbols_t* symbols,
                     xcb_keysym_t keysym) {
  const ReplyPtr<xcb_get_modifier_mapping_reply_t> map(
      xcb_get_modifier_mapping_reply(connection, xcb_get_modifier_mapping(connection), nullptr));
  if (!map) return 0;
  const auto codes = keycodesOf(symbols, keysym);
  const auto* entries = xcb_get_modifier_mapping_keycodes(map.get());
  for (unsigned modifier = 0; modifier < 8; ++modifier) {
    for (unsigned slot = 0; slot < map->keycodes_per_modifier; ++slot) {
      const auto entry = entries[modifier * map->keycodes_per_modifier + slot];
      for (const auto code : codes) {
        if (code == entry) return static_cast<std::uint16_t>(1U << modifier);
      }
    }
  }
  return 0;
}

// Every mix of the locks, each once.
std::set<std::uint16_t> mixes(const std::vector<std::uint16_t>& locks) {
  std::set<std::uint16_t> all = {0};
  for (const auto lock : locks) {
    const auto before = all;
    for (const auto mix : before) all.insert(static_cast<std::uint16_t>(mix | lock));
  }
  return all;
}

std::uint16_t modifiersOf(Combination combination) {
  unsigned mask = 0;
  if ((combination.modifiers & cmdKey) != 0) mask |= XCB_MOD_MASK_4;  // Super
  if ((combination.modifiers & shiftKey) != 0) mask |= XCB_MOD_MASK_SHIFT;
  return static_cast<std::uint16_t>(mask);
}

// Tells a key that was pressed from one that is held: while it is held, servers send releases and
// presses in pairs of the same instant, or presses alone. Until it is released, all other keys come
// to us, too; they do not count.
class PressCounter {
 public:
  // Whether the event is the beginning of a press.
  bool isPress(const xcb_generic_event_t& event) {
    const auto kind = event.response_type & 0x7F;
    const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(event);
    if (kind == XCB_KEY_RELEASE && held_ == key.detail) {
      held_.reset();
      released_ = {key.detail, key.time};
    }
    if (kind != XCB_KEY_PRESS || held_) return false;
    held_ = key.detail;
    return released_ != std::pair(key.detail, key.time);
  }

  // The release of a key may be missed while grabs change.
  void forget() { held_.reset(); }

 private:
  std::optional<xcb_keycode_t> held_;
  std::pair<xcb_keycode_t, xcb_timestamp_t> released_;
};

// One grab that the server granted.
struct Hold {
  xcb_window_t root = 0;
  std::uint16_t modifiers = 0;
  xcb_keycode_t key = 0;

  friend auto operator<=>(const Hold&, const Hold&) = default;
};

// The grabs on one connection, for as long as the server stays.
class Grab {
 public:
  Grab(ConnectionPtr connection, std::uint16_t modifiers, xcb_keysym_t keysym, Pressed pressed,
       std::function<void()> lost)
      : connection_(std::move(connection)),
        modifiers_(modifiers),
        keysym_(keysym),
        pressed_(std::move(pressed)),
        lost_(std::move(lost)) {
    grab();
    handleEvents();  // what came along with the answers wakes nobody
    source_ = g_unix_fd_add(xcb_get_file_descriptor(connection_.get()), G_IO_IN, &onReadable, this);
  }
  Grab(const Grab&) = delete;
  Grab& operator=(const Grab&) = delete;
  ~Grab() {
    if (source_ != 0) g_source_remove(source_);
  }

 private:
  using SymbolsPtr = std::unique_ptr<xcb_key_symbols_t, FreeSymbols>;

  void grab() {
    auto* connection = connection_.get();
    const SymbolsPtr symbols(xcb_key_symbols_alloc(connection));
    if (!symbols) return;
    const std::vector<std::uint16_t> locks = {XCB_MOD_MASK_LOCK,
                                              maskOf(connection, symbols.get(), kNumLock),
                                              maskOf(connection, symbols.get(), kScrollLock)};
    std::set<Hold> wanted;
    for (auto root = xcb_setup_roots_iterator(xcb_get_setup(connection)); root.rem > 0;
         xcb_screen_next(&root)) {
      for (const auto code : keycodes(symbols.get())) {
        for (const auto mix : mixes(locks)) {
          wanted.insert({root.data->root, static_cast<std::uint16_t>(modifiers_ | mix), code});
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
    takeAnswers(requests);
  }

  // On a layout that has no such letter, the place of the key on an ANSI keyboard counts.
  [[nodiscard]] std::vector<xcb_keycode_t> keycodes(xcb_key_symbols_t* symbols) const {
    auto codes = keycodesOf(symbols, keysym_);
    if (codes.empty() && keysym_ == 'z') codes.push_back(kAnsiZ);
    return codes;
  }

  // Some of a combination's mixes may be free although another program holds the plain one; one
  // refusal is enough to say so, once.
  void takeAnswers(const std::vector<std::pair<Hold, xcb_void_cookie_t>>& requests) {
    bool refused = false;
    for (const auto& [hold, request] : requests) {
      const ReplyPtr<xcb_generic_error_t> error(xcb_request_check(connection_.get(), request));
      if (!error) held_.insert(hold);
      refused = refused || error;
    }
    if (!refused || std::exchange(toldRefusal_, true)) return;
    std::cerr << "orvane: Another program holds the key that toggles focus mode.\n";
  }

  // Whoever is told may destroy the grab, so telling comes last.
  static gboolean onReadable(gint, GIOCondition, gpointer data) {
    auto& self = *static_cast<Grab*>(data);
    const int presses = self.handleEvents();
    if (xcb_connection_has_error(self.connection_.get()) != 0) {
      self.source_ = 0;
      const auto lost = self.lost_;
      lost();
      return G_SOURCE_REMOVE;
    }
    const auto pressed = self.pressed_;
    for (int press = 0; press < presses; ++press) pressed();
    return G_SOURCE_CONTINUE;
  }

  // A change of the mapping is told by several events at once. Grabbing anew waits for answers, and
  // may bring further events along.
  int handleEvents() {
    int presses = 0;
    bool isOutdated = false;
    do {
      if (std::exchange(isOutdated, false)) grab();
      while (const ReplyPtr<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
        if (counter_.isPress(*event)) ++presses;
        isOutdated = isOutdated || (event->response_type & 0x7F) == XCB_MAPPING_NOTIFY;
      }
    } while (isOutdated);
    return presses;
  }

  const ConnectionPtr connection_;
  const std::uint16_t modifiers_;
  const xcb_keysym_t keysym_;
  const Pressed pressed_;
  const std::function<void()> lost_;
  std::set<Hold> held_;
  PressCounter counter_;
  guint source_ = 0;
  bool toldRefusal_ = false;
};

class X11Grab final : public HotKeySource {
 public:
  X11Grab(std::string display, Combination combination, xcb_keysym_t keysym, MainActor& mainActor,
          Pressed pressed)
      : display_(std::move(display)),
        modifiers_(modifiersOf(combination)),
        keysym_(keysym),
        mainActor_(mainActor),
        pressed_(std::move(pressed)) {
    connect();
  }

 private:
  void connect() {
    ConnectionPtr connection(xcb_connect(display_.c_str(), nullptr));
    if (xcb_connection_has_error(connection.get()) != 0) return tryAgain();
    delay_ = kFirstDelay;
    grab_ = std::make_unique<Grab>(std::move(connection), modifiers_, keysym_, pressed_,
                                   [this] { tryAgain(); });
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
  const std::uint16_t modifiers_;
  const xcb_keysym_t keysym_;
  MainActor& mainActor_;
  const Pressed pressed_;
  std::chrono::seconds delay_ = kFirstDelay;
  std::unique_ptr<Grab> grab_;
  Subscription retry_;
};

}  // namespace

std::unique_ptr<HotKeySource> makeX11Grab(const std::string& display, Combination combination,
                                          MainActor& mainActor, Pressed pressed) {
  const auto keysym = keysymOf(combination.keyCode);
  if (display.empty() || !keysym) return nullptr;
  return std::make_unique<X11Grab>(display, combination, *keysym, mainActor, std::move(pressed));
}

}  // namespace orvane::host::hotkey
