// Neighbours of the board on an X11 desktop, and what else the tests do there:
//   x11_client window TITLE RRGGBB X Y WIDTH HEIGHT    an ordinary window of one colour
//   x11_client desktop TITLE RRGGBB X Y WIDTH HEIGHT   a window that says it is the desktop
//   x11_client stripes TITLE RRGGBB X Y WIDTH HEIGHT   the same, with every other eight pixels
//   black x11_client root                                    nothing but the clicks on the root
//   window x11_client show-desktop 0|1                        the message that panels send for it
//   x11_client picture                                 what the screen shows, as a PPM
//   x11_client await X Y RRGGBB                        until that pixel comes to be of that colour
// The first four print "ready" when they are on the screen and a line for each click and key that
// reaches them, and run until they are told to end. The last prints "ready" once the pixel is of
// another colour, and at the end when it was that it came to be, in seconds of the monotonic clock.
#include <poll.h>
#include <xcb/xcb.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr std::uint32_t clicks = XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE;

struct Freed {
  void operator()(void* it) const { std::free(it); }
};
using Event = std::unique_ptr<xcb_generic_event_t, Freed>;

struct Place {
  std::int16_t x = 0;
  std::int16_t y = 0;
  std::uint16_t width = 0;
  std::uint16_t height = 0;
};

struct Client {
  xcb_connection_t* connection = nullptr;
  xcb_screen_t* screen = nullptr;
  xcb_window_t window = 0;
};

[[noreturn]] void fail(const char* reason) {
  std::fprintf(stderr, "x11_client: %s\n", reason);
  std::exit(1);
}

void say(const char* line) {
  std::puts(line);
  std::fflush(stdout);
}

xcb_atom_t atom(const Client& client, const char* name) {
  const auto asked =
      xcb_intern_atom(client.connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
  std::unique_ptr<xcb_intern_atom_reply_t, Freed> reply(
      xcb_intern_atom_reply(client.connection, asked, nullptr));
  return reply ? reply->atom : XCB_NONE;
}

void setText(const Client& client, xcb_atom_t name, xcb_atom_t type, const std::string& text) {
  xcb_change_property(client.connection, XCB_PROP_MODE_REPLACE, client.window, name, type, 8,
                      static_cast<std::uint32_t>(text.size()), text.data());
}

template <std::size_t Count>
void setNumbers(const Client& client, xcb_atom_t name, xcb_atom_t type,
                const std::array<std::uint32_t, Count>& numbers) {
  xcb_change_property(client.connection, XCB_PROP_MODE_REPLACE, client.window, name, type, 32,
                      Count, numbers.data());
}

void describe(const Client& client, const std::string& title, bool isDesktop, const Place& place) {
  setText(client, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, title);
  setText(client, atom(client, "_NET_WM_NAME"), atom(client, "UTF8_STRING"), title);
  setText(client, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, title + '\0' + title + '\0');
  constexpr std::uint32_t positionAndSizeOfUser = 3;
  setNumbers(client, XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS,
             std::array<std::uint32_t, 18>{
                 positionAndSizeOfUser, static_cast<std::uint32_t>(place.x),
                 static_cast<std::uint32_t>(place.y), place.width, place.height});
  constexpr std::uint32_t inputGiven = 1;
  setNumbers(client, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS,
             std::array<std::uint32_t, 9>{inputGiven, isDesktop ? 0U : 1U});
  const char* type = isDesktop ? "_NET_WM_WINDOW_TYPE_DESKTOP" : "_NET_WM_WINDOW_TYPE_NORMAL";
  setNumbers(client, atom(client, "_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM,
             std::array{atom(client, type)});
}

// For a window's background: a stripe of the colour and one of black, repeated by the server.
xcb_pixmap_t makeStripes(const Client& client, std::uint32_t color) {
  constexpr std::uint16_t width = 8;
  const auto pixmap = xcb_generate_id(client.connection);
  xcb_create_pixmap(client.connection, client.screen->root_depth, pixmap, client.screen->root,
                    2 * width, 1);
  const auto gc = xcb_generate_id(client.connection);
  const std::array<std::uint32_t, 1> first = {color};
  xcb_create_gc(client.connection, gc, pixmap, XCB_GC_FOREGROUND, first.data());
  const xcb_rectangle_t left{0, 0, width, 1};
  xcb_poly_fill_rectangle(client.connection, pixmap, gc, 1, &left);
  const std::array<std::uint32_t, 1> second = {client.screen->black_pixel};
  xcb_change_gc(client.connection, gc, XCB_GC_FOREGROUND, second.data());
  const xcb_rectangle_t right{width, 0, width, 1};
  xcb_poly_fill_rectangle(client.connection, pixmap, gc, 1, &right);
  return pixmap;
}

void open(Client& client, const std::string& title, std::uint32_t color, const Place& place,
          const std::string& kind) {
  client.window = xcb_generate_id(client.connection);
  const bool isStriped = kind == "stripes";
  const std::array<std::uint32_t, 2> values = {
      isStriped ? makeStripes(client, color) : color,
      clicks | XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_FOCUS_CHANGE |
          XCB_EVENT_MASK_STRUCTURE_NOTIFY};
  xcb_create_window(
      client.connection, XCB_COPY_FROM_PARENT, client.window, client.screen->root, place.x, place.y,
      place.width, place.height, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, client.screen->root_visual,
      (isStriped ? XCB_CW_BACK_PIXMAP : XCB_CW_BACK_PIXEL) | XCB_CW_EVENT_MASK, values.data());
  describe(client, title, kind == "desktop" || isStriped, place);
  if (kind == "fullscreen") {
    setNumbers(client, atom(client, "_NET_WM_STATE"), XCB_ATOM_ATOM,
               std::array{atom(client, "_NET_WM_STATE_FULLSCREEN")});
  }
  xcb_map_window(client.connection, client.window);
}

// What a panel sends to have ordinary windows put aside, or brought back.
int showDesktop(const Client& client, bool shown) {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = client.screen->root;
  message.type = atom(client, "_NET_SHOWING_DESKTOP");
  message.data.data32[0] = shown ? 1 : 0;
  xcb_send_event(client.connection, 0, client.screen->root,
                 XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&message));
  xcb_flush(client.connection);
  atom(client, "_NET_SHOWING_DESKTOP");  // an answer means that the message was taken
  return 0;
}

int writePicture(const Client& client) {
  const auto width = client.screen->width_in_pixels;
  const auto height = client.screen->height_in_pixels;
  const auto asked = xcb_get_image(client.connection, XCB_IMAGE_FORMAT_Z_PIXMAP,
                                   client.screen->root, 0, 0, width, height, 0xffffffffU);
  const std::unique_ptr<xcb_get_image_reply_t, Freed> image(
      xcb_get_image_reply(client.connection, asked, nullptr));
  const std::size_t count = std::size_t{width} * height;
  if (!image || static_cast<std::size_t>(xcb_get_image_data_length(image.get())) != 4 * count) {
    fail("the screen cannot be read");
  }
  const std::uint8_t* pixels = xcb_get_image_data(image.get());  // blue first, as on x86 and ARM
  std::vector<std::uint8_t> colors(3 * count);
  for (std::size_t i = 0; i < count; ++i) {
    for (std::size_t part = 0; part < 3; ++part) colors[3 * i + part] = pixels[4 * i + 2 - part];
  }
  std::printf("P6\n%d %d\n255\n", width, height);
  return std::fwrite(colors.data(), 1, colors.size(), stdout) == colors.size() ? 0 : 1;
}

std::uint32_t colorAt(const Client& client, std::int16_t x, std::int16_t y) {
  const auto asked = xcb_get_image(client.connection, XCB_IMAGE_FORMAT_Z_PIXMAP,
                                   client.screen->root, x, y, 1, 1, 0xffffffffU);
  const std::unique_ptr<xcb_get_image_reply_t, Freed> image(
      xcb_get_image_reply(client.connection, asked, nullptr));
  if (!image || xcb_get_image_data_length(image.get()) < 4) fail("the screen cannot be read");
  const std::uint8_t* pixel = xcb_get_image_data(image.get());
  return std::uint32_t{pixel[2]} << 16U | std::uint32_t{pixel[1]} << 8U | pixel[0];
}

// The server tells nobody of a single pixel, which is looked at every few milliseconds.
int awaitColor(const Client& client, std::int16_t x, std::int16_t y, std::uint32_t color) {
  constexpr int pause = 3;
  pollfd server{xcb_get_file_descriptor(client.connection), POLLIN, 0};
  while (colorAt(client, x, y) == color) poll(&server, 1, pause);
  say("ready");
  while (colorAt(client, x, y) != color) poll(&server, 1, pause);
  const std::chrono::duration<double> now = std::chrono::steady_clock::now().time_since_epoch();
  std::printf("%.4f\n", now.count());
  return 0;
}

void watchRoot(Client& client) {
  client.window = client.screen->root;
  const auto asked = xcb_change_window_attributes_checked(client.connection, client.window,
                                                          XCB_CW_EVENT_MASK, &clicks);
  const Event error(
      reinterpret_cast<xcb_generic_event_t*>(xcb_request_check(client.connection, asked)));
  if (error) fail("another program has the clicks on the root window");
  say("ready");
}

void tell(const xcb_generic_event_t& event, bool& isReady) {
  switch (event.response_type & 0x7fU) {
    case XCB_EXPOSE:
      if (!isReady) say("ready");
      isReady = true;
      break;
    case XCB_BUTTON_PRESS:
      say("pressed");
      break;
    case XCB_BUTTON_RELEASE:
      say("released");
      break;
    case XCB_KEY_PRESS:
      say("key");
      break;
    case XCB_FOCUS_IN:
      say("focused");
      break;
    case XCB_FOCUS_OUT:
      say("unfocused");
      break;
    default:
      break;
  }
}

long number(const char* text, int base = 10) { return std::strtol(text, nullptr, base); }

}  // namespace

int main(int count, char** words) {
  const std::string kind = count > 1 ? words[1] : "";
  const bool isRoot = kind == "root" && count == 2;
  const bool isShowDesktop = kind == "show-desktop" && count == 3;
  const bool isPicture = kind == "picture" && count == 2;
  const bool isAwait = kind == "await" && count == 5;
  const bool isWindow =
      kind == "window" || kind == "desktop" || kind == "stripes" || kind == "fullscreen";
  if (!isRoot && !isShowDesktop && !isPicture && !isAwait && (count != 8 || !isWindow)) {
    fail(
        "use: window|fullscreen|desktop|stripes TITLE RRGGBB X Y WIDTH HEIGHT; root; show-desktop "
        "0|1; "
        "picture; await X Y RRGGBB");
  }
  Client client;
  client.connection = xcb_connect(nullptr, nullptr);
  const std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t*)> ends(client.connection,
                                                                            &xcb_disconnect);
  if (xcb_connection_has_error(client.connection) != 0) fail("no display");
  client.screen = xcb_setup_roots_iterator(xcb_get_setup(client.connection)).data;
  if (isPicture) return writePicture(client);
  if (isAwait) {
    return awaitColor(client, static_cast<std::int16_t>(number(words[2])),
                      static_cast<std::int16_t>(number(words[3])),
                      static_cast<std::uint32_t>(number(words[4], 16)));
  }
  if (isShowDesktop) return showDesktop(client, number(words[2]) != 0);
  if (isRoot) {
    watchRoot(client);
  } else {
    const Place place{
        static_cast<std::int16_t>(number(words[4])), static_cast<std::int16_t>(number(words[5])),
        static_cast<std::uint16_t>(number(words[6])), static_cast<std::uint16_t>(number(words[7]))};
    open(client, words[2], static_cast<std::uint32_t>(number(words[3], 16)), place, kind);
  }
  xcb_flush(client.connection);
  bool isReady = isRoot;
  while (const Event event{xcb_wait_for_event(client.connection)}) tell(*event, isReady);
}
