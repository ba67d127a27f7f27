#include <fcntl.h>
#include <glibmm/main.h>
#include <gtk/gtk.h>
#include <gtkmm/init.h>
#include <sys/socket.h>

#include <cstdlib>
#include <iostream>
#include <memory>

#include "linux/settingswindow/gtk/board_socket.h"
#include "linux/settingswindow/gtk/conversation.h"
#include "linux/settingswindow/gtk/desktop_preference.h"

namespace orvane::window {
namespace {

constexpr const char* kApplication = "org.orvane.Orvane";

bool isSocket(int descriptor) {
  int type = 0;
  socklen_t size = sizeof type;
  return ::getsockopt(descriptor, SOL_SOCKET, SO_TYPE, &type, &size) == 0 && type == SOCK_STREAM;
}

int end(int status, const char* sentence) {
  std::cerr << "orvane-settings: " << sentence << '\n';
  return status;
}

// A window of this size is painted on the processor sooner than a graphics context is there; and
// that costs a quarter of the start where only looking for one loads the drivers.
void preferQuickStart() {
  ::setenv("GSK_RENDERER", "cairo", 0);
  if (gtk_get_minor_version() < 14) {
    ::setenv("GDK_DEBUG", "gl-disable", 0);
  } else {
    ::setenv("GDK_DISABLE", "gl,vulkan", 0);
  }
}

int converse() {
  const auto loop = Glib::MainLoop::create();
  int status = 0;
  std::unique_ptr<BoardSocket> socket;
  Conversation conversation([&](const formwire::WindowMessage& message) { socket->send(message); });
  const DesktopPreference preference(
      [&](const std::optional<Gdk::RGBA>& accent) { conversation.setAccent(accent); });
  socket = std::make_unique<BoardSocket>(host::FileDescriptor(formwire::kSocket),
                                         BoardSocket::Ears{[&](formwire::BoardMessage message) {
                                                             conversation.hear(std::move(message));
                                                           },
                                                           [&](bool isNonsense) {
                                                             if (isNonsense)
                                                               status = formwire::kExitNonsense;
                                                             loop->quit();
                                                           }});
  loop->run();
  return status;
}

int run() {
  if (!isSocket(formwire::kSocket)) {
    return end(formwire::kExitNonsense, "it is started by orvane, which shows its settings by it.");
  }
  preferQuickStart();
  g_set_prgname(kApplication);
  g_set_application_name("Orvane");
  if (!gtk_init_check()) {
    return end(formwire::kExitNoDisplay, "there is no display that it can use.");
  }
  Gtk::init_gtkmm_internals();
  const int status = converse();
  if (status != 0) return end(status, "it was told something that it does not understand.");
  return status;
}

}  // namespace
}  // namespace orvane::window

int main() { return orvane::window::run(); }
