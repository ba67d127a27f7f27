// A program that shows no window, but talks like one that does: it acknowledges what it is told and
// does what the form's subtitle says whenever a form arrives.
//
//   tell          tells all that it was told, as an edit of "told"
//   edit KEY TEXT edits a control
//   toggle KEY    switches a control on
//   press KEY     presses a button
//   state         tells that it was moved and scrolled
//   scale NUMBER  wants previews
//   close         is closed by the user
//   close first   the same, but just before it understands that it is to be shown again
//   last words    edits "words" to be "lunch", and crashes
//   exit STATUS, crash, hang up, stay on (when it is no more talked to), garbage
//
// With a "!" before it the form is not acknowledged.

#include <fcntl.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>

#include "linux/settingswindow/wire/message_stream.h"

namespace {

using namespace orvane::formwire;

std::string number(double value) {
  std::ostringstream text;
  text << value;
  return text.str();
}

std::string describe(const WindowState& state) {
  std::string text;
  if (state.position) text += " at " + number(state.position->x) + "," + number(state.position->y);
  for (const auto& [name, offset] : state.scrollOffsets) text += " " + name + "=" + number(offset);
  return text;
}

std::string openFiles() {
  std::string files;
  for (int file = 0; file < 256; ++file) {
    if (fcntl(file, F_GETFD) >= 0) files += " " + std::to_string(file);
  }
  return files;
}

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

class FakeWindow {
 public:
  int run() {
    told_ = "process " + std::to_string(getpid()) + "\nfiles" + openFiles() + "\ntoken \"" +
            environment("XDG_ACTIVATION_TOKEN") + environment("DESKTOP_STARTUP_ID") + "\"\n";
    std::array<char, 65536> bytes;
    for (;;) {
      const ssize_t count = read(kSocket, bytes.data(), bytes.size());
      if (count <= 0) return staysOn_ ? pause() : 0;
      stream_.append(bytes.data(), static_cast<std::size_t>(count));
      while (const auto message = stream_.next()) {
        std::visit([this](const auto& one) { heard(one); }, *message);
      }
      if (stream_.isBroken()) return kExitNonsense;
    }
  }

 private:
  void heard(const Show& show) {
    told_ += "show \"" + show.title + "\"" + describe(show.state) +
             (show.style.isTitled ? " titled" : "") + (show.style.isClosable ? " closable" : "") +
             (show.style.isMiniaturizable ? " miniaturizable" : "") +
             (show.style.titlebarAppearsTransparent ? " transparent" : "") +
             (show.isCentered ? " centered" : "") + " token \"" + show.activationToken + "\" tab " +
             show.form.selectedTab + " edit " + std::to_string(show.lastEdit) + "\n";
    follow(show.form, show.sequence);
  }
  void heard(const Update& update) {
    told_ += "update" + (update.form ? " tab " + update.form->selectedTab : std::string()) +
             " edit " + std::to_string(update.lastEdit) + "\n";
    if (!update.form) return say(Ack{update.sequence});
    follow(*update.form, update.sequence);
  }
  void heard(const Preview& preview) {
    told_ += "preview " + preview.key + " " + std::to_string(preview.width) + "x" +
             std::to_string(preview.height) + " at " + number(preview.scale) + "\n";
    say(Ack{preview.sequence});
  }

  void follow(const orvane::Form& form, std::uint64_t sequence) {
    std::string order = form.header.subtitle.text;
    if (order == "close first") say(Closed{});
    if (!order.starts_with("!")) say(Ack{sequence});
    order.erase(0, order.starts_with("!") ? 1 : 0);
    std::istringstream words(order);
    std::string what, key, text;
    words >> what >> key >> text;
    carryOut(order, what, key, text);
  }

  void carryOut(const std::string& order, const std::string& what, const std::string& key,
                const std::string& text) {
    if (what == "tell") edit("told", told_);
    if (what == "edit") edit(key, text);
    if (what == "toggle") edit(key, true);
    if (what == "press") edit(key, std::monostate{});
    if (what == "state") say(State{exampleState()});
    if (what == "scale") say(PreviewScale{std::stod(key)});
    if (order == "close") say(Closed{});
    if (what == "exit") std::exit(std::stoi(key));
    if (what == "last") edit("words", std::string("lunch"));
    if (what == "last" || what == "crash") raise(SIGKILL);
    if (what == "stay") staysOn_ = true;
    if (what == "garbage") write("Segmentation fault");
    if (what == "hang") {
      shutdown(kSocket, SHUT_RDWR);
      pause();
    }
  }

  static WindowState exampleState() { return {orvane::Point{40, -30}, {{"sources", 120.5}}}; }

  void edit(const std::string& key, orvane::FormValue value) {
    say(Edited{++edits_, {key, std::move(value)}});
  }
  static void say(const WindowMessage& message) { write(encode(message).value()); }
  static void write(const std::string& bytes) {
    for (std::size_t written = 0; written < bytes.size();) {
      const ssize_t count = ::write(kSocket, bytes.data() + written, bytes.size() - written);
      if (count <= 0) std::exit(1);
      written += static_cast<std::size_t>(count);
    }
  }

  BoardMessageStream stream_;
  std::string told_;
  std::uint64_t edits_ = 0;
  bool staysOn_ = false;
};

}  // namespace

int main() { return FakeWindow().run(); }
