#include "x11_session.h"

#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

#include "x11_observer.h"

namespace orvane::desktop_test {

namespace fs = std::filesystem;

namespace {

// The first whole line of digits alone; empty when there is none.
std::string numberIn(const std::string& output) {
  std::istringstream lines(output.substr(0, output.rfind('\n') + 1));
  for (std::string line; std::getline(lines, line);) {
    if (!line.empty() && line.find_first_not_of("0123456789") == std::string::npos) return line;
  }
  return {};
}

// A number that is this process's alone: a server that looks for a free one by itself takes no lock
// on it, so that others that start at the same time take it, too. A process has a second one for a
// second session.
std::string ownDisplay() {
  constexpr int kProcesses = 20000;
  int number = 100 + getpid() % kProcesses;
  while (fs::exists("/tmp/.X11-unix/X" + std::to_string(number))) number += kProcesses;
  return ":" + std::to_string(number);
}

// Whatever else is installed, this bus starts Xfce's settings and nothing more.
constexpr const char* kSettingsService = "org.xfce.Xfconf.service";

std::string busConfiguration(const fs::path& services) {
  return "<busconfig><type>session</type><listen>unix:tmpdir=" + services.string() +
         "</listen><servicedir>" + services.string() +
         "</servicedir><policy context=\"default\"><allow own=\"*\"/>"
         "<allow send_destination=\"*\"/><allow receive_sender=\"*\"/></policy></busconfig>";
}

// So that what comes within hours is today, whatever the time is elsewhere.
std::string zoneWhereItIsNoon() {
  constexpr int hoursOfADay = 24, noon = 12;
  const auto hours = std::chrono::floor<std::chrono::hours>(std::chrono::system_clock::now());
  const auto offset = hours.time_since_epoch().count() % hoursOfADay - noon;
  return "Etc/GMT" + std::string(offset < 0 ? "" : "+") + std::to_string(offset);
}

}  // namespace

Session::Session(std::vector<std::string> serverOptions) {
  const auto home = folder_.path();
  fs::create_directories(home / "run");
  fs::permissions(home / "run", fs::perms::owner_all);
  environment_ = {{"HOME", home},
                  {"XDG_RUNTIME_DIR", home / "run"},
                  {"XDG_CONFIG_HOME", home / "config"},
                  {"XDG_CACHE_HOME", home / "cache"},
                  {"XDG_DATA_HOME", home / "data"},
                  {"XDG_STATE_HOME", home / "state"},
                  {"WAYLAND_DISPLAY", ""},
                  {"LC_ALL", "C.UTF-8"},
                  {"TZ", zoneWhereItIsNoon()},
                  {"GIO_USE_VFS", "local"},
                  {"GSETTINGS_BACKEND", "memory"},
                  {"NO_AT_BRIDGE", "1"}};
  startServer(serverOptions);
}

// The server tells its number on its standard output once it can be connected to.
void Session::startServer(const std::vector<std::string>& options) {
  if (display_.empty()) display_ = ownDisplay();
  std::vector<std::string> command = {"Xvfb", display_,      "-displayfd", "1",  "-screen",
                                      "0",    "1600x900x24", "-nolisten",  "tcp"};
  command.insert(command.end(), options.begin(), options.end());
  server_ = start(std::move(command));
  std::string number;
  eventually([&] {
    number = numberIn(server_->output());
    return !number.empty() || server_->status();
  });
  if (number.empty()) throw std::runtime_error("Xvfb does not start: " + server_->output());
  environment_["DISPLAY"] = display_;
}

void Session::killServer() {
  server_->signal(SIGKILL);
  server_->waitForEnd();
}

void Session::startServerAgain() { startServer({}); }

std::unique_ptr<ChildProcess> Session::start(std::vector<std::string> command) const {
  return std::make_unique<ChildProcess>(std::move(command), environment_);
}

void Session::startBus() {
  if (bus_) return;
  const auto services = folder_.path() / "services";
  fs::create_directories(services);
  fs::copy_file(fs::path("/usr/share/dbus-1/services") / kSettingsService,
                services / kSettingsService);
  const auto configuration = services / "bus.conf";
  std::ofstream(configuration) << busConfiguration(services);
  bus_ = start(
      {"dbus-daemon", "--config-file=" + configuration.string(), "--nofork", "--print-address=1"});
  const auto address = bus_->firstLine();
  if (address.empty()) throw std::runtime_error("no bus: " + bus_->output());
  environment_["DBUS_SESSION_BUS_ADDRESS"] = address;
}

void Session::startWindowManager(bool compositing) {
  startBus();
  manageWith({"xfwm4", "--replace", compositing ? "--compositor=on" : "--compositor=off"},
             compositing);
}

void Session::startOpenbox() { manageWith({"openbox", "--replace"}, false); }

void Session::killWindowManager() {
  windowManager_->signal(SIGKILL);
  windowManager_->waitForEnd();
}

void Session::manageWith(std::vector<std::string> command, bool compositing) {
  Observer observer(display_);
  const auto before = observer.windowManager();
  const std::string name = command.front();
  auto next = start(std::move(command));
  const bool manages = eventually([&] {
    return observer.windowManager() != 0 && observer.windowManager() != before &&
           observer.isComposited() == compositing;
  });
  windowManager_ = std::move(next);
  if (!manages) throw std::runtime_error(name + " does not manage: " + windowManager_->output());
}

void Session::startDesktop() {
  hideIcons();
  startBus();
  desktop_ = start({"xfdesktop"});
  Observer observer(display_);
  const bool stands = eventually([&] {
    return observer.find("xfdesktop", "Desktop").has_value() && observer.rootPicture() != 0;
  });
  if (!stands) throw std::runtime_error("xfdesktop does not stand: " + desktop_->output());
  // The menus and the picture in its final size may come a little later.
  Picture last = observer.grab();
  eventually([&] {
    const auto span = Milliseconds(500);
    const bool still = throughout(span, [&] { return observer.grab() == last; });
    last = observer.grab();
    return still;
  });
}

// Icons are painted into the desktop's window and not into the root picture, so without compositing
// there is nothing to know them from.
void Session::hideIcons() const {
  const auto folder = folder_.path() / "config/xfce4/xfconf/xfce-perchannel-xml";
  fs::create_directories(folder);
  std::ofstream(folder / "xfce4-desktop.xml") << R"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-desktop" version="1.0">
  <property name="desktop-icons" type="empty">
    <property name="style" type="int" value="0"/>
  </property>
</channel>
)";
}

}  // namespace orvane::desktop_test
