// settingswindow/wire/ is what the board and the program of the settings window say to each other
// over a private socket: plain values and their bytes, standard C++ and JSON only. Both programs
// link it, and each checks what the other says like any foreign input.
//
// A conversation:
//  - The board starts the program with the socket as the descriptor `kSocket` and writes Show. The
//    program ends at once, with status 0, when the board closes its end of the socket, and with
//    kExitNonsense when it reads something that is no message.
//  - Show puts the window up and in front, whether the program has just started, hid the window
//    before or shows it already; in the last case it stays where and as large as it is. Update
//    changes what is in it.
//  - When the user closes the window, the program hides it, writes State and Closed, and waits: for
//    another Show, which shows the same window again, or for its end. While it is hidden it is told
//    nothing else; what was under way when it was closed may still arrive.
//  - The board writes Show, Update and Preview with ever larger sequence numbers, and writes no
//    more of them before the last one was acknowledged. So the window may take its time, and is
//    then told only how things stand. Every sequence number is acknowledged, in order, once its
//    content was taken over, also while the window is hidden. A Closed that the window wrote before
//    it acknowledged a Show is older than that Show, which counts. A program that acknowledges
//    nothing for many seconds is ended.
//  - The window numbers the user's edits 1, 2, 3 … from the program's start on. Show and Update
//    tell in `lastEdit` the last one that the board had carried out when the form was as they say.
//    Each edit is answered by an Update, also one that came to nothing. So a control of which an
//    edit later than `lastEdit` is under way, or which is just being dragged or typed in with such
//    an edit to come, keeps what the user gave it; every other control shows what the form says,
//    and a control whose edits were all answered shows it too, even where it differs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "platform/form.h"

namespace orvane::formwire {

// The program's descriptor of the socket, a connected stream.
inline constexpr int kSocket = 3;

// How the program ends, besides 0 for the end of a conversation.
inline constexpr int kExitNonsense = 64;    // it was told something that is no message
inline constexpr int kExitNoDisplay = 69;   // there is no display that its toolkit can use
inline constexpr int kExitNoLibrary = 127;  // told by the dynamic linker: a library is missing

// The window as the user left it, in points. It is always as large as its form asks for.
struct WindowState {
  std::optional<Point> position;                // absent: never told, as on Wayland
  std::map<std::string, double> scrollOffsets;  // by the window's own names; at most kMostOffsets
  friend bool operator==(const WindowState&, const WindowState&) = default;
};

struct WindowStyle {
  bool isTitled = true;
  bool isClosable = true;
  bool isMiniaturizable = true;
  bool titlebarAppearsTransparent = false;
  friend bool operator==(const WindowStyle&, const WindowStyle&) = default;
};

// ---- From the board

// Shows the window, in front and with the keyboard's focus. Of a form that arrived over the wire
// colours are sRGB components, and previews are sizes without a view: their pictures come apart.
struct Show {
  std::uint64_t sequence = 0;
  std::uint64_t lastEdit = 0;
  std::string title;
  WindowStyle style;
  WindowState state;
  // What lets the window take the focus (XDG activation token or startup id); may be empty.
  std::string activationToken;
  Form form;
  // Wanted in the middle of the screen while no position is told, as far as a window may say so.
  bool isCentered = false;
  friend bool operator==(const Show&, const Show&) = default;
};

struct Update {
  std::uint64_t sequence = 0;
  std::uint64_t lastEdit = 0;
  std::optional<Form> form;  // absent: as it was
  friend bool operator==(const Update&, const Update&) = default;
};

// The picture of the preview of that key: premultiplied ARGB, 32 bits a pixel in the machine's byte
// order, rows without gaps.
struct Preview {
  std::uint64_t sequence = 0;
  std::string key;
  std::uint32_t width = 0;  // in pixels, like the height; neither is 0
  std::uint32_t height = 0;
  double scale = 1;  // pixels a point
  std::string pixels;
  friend bool operator==(const Preview&, const Preview&) = default;
};

using BoardMessage = std::variant<Show, Update, Preview>;

// ---- From the window

struct Edited {
  std::uint64_t number = 0;
  FormEdit edit;
  friend bool operator==(const Edited&, const Edited&) = default;
};

// The user closed the window, by its title bar or a button that closes it. State came before.
struct Closed {
  friend bool operator==(const Closed&, const Closed&) = default;
};

// Told when the window was moved or scrolled, once that came to rest, and when it is closed.
struct State {
  WindowState state;
  friend bool operator==(const State&, const State&) = default;
};

// How many pixels a point has on the window's screen; 0 while no preview can be seen, which saves
// the board drawing them. Nothing is drawn before it was told.
struct PreviewScale {
  double scale = 0;
  friend bool operator==(const PreviewScale&, const PreviewScale&) = default;
};

struct Ack {
  std::uint64_t sequence = 0;
  friend bool operator==(const Ack&, const Ack&) = default;
};

using WindowMessage = std::variant<Edited, Closed, State, PreviewScale, Ack>;

// ---- Bytes

// A frame is four bytes with the length of the rest, little-endian, one byte that tells its kind,
// and the content: JSON, or for pictures numbers of fixed width, a key and the pixels.
inline constexpr std::size_t kMostBoardBytes = std::size_t{32} << 20;
inline constexpr std::size_t kMostWindowBytes = std::size_t{1} << 20;
inline constexpr std::size_t kMostOffsets = 64;
inline constexpr double kLargestScale = 8;

// The whole frame. Nothing when the message is over the limits. Bytes that are no UTF-8 are
// replaced by U+FFFD.
[[nodiscard]] std::optional<std::string> encode(const BoardMessage& message);
[[nodiscard]] std::optional<std::string> encode(const WindowMessage& message);

// From what follows the length. Any bytes may be given: nothing when they are not a message as
// encode() makes them, within the limits.
[[nodiscard]] std::optional<BoardMessage> decodeBoardMessage(std::string_view content);
[[nodiscard]] std::optional<WindowMessage> decodeWindowMessage(std::string_view content);

}  // namespace orvane::formwire
