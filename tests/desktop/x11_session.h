#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "support/scratch_folder.h"
#include "x11_child_process.h"

namespace orvane::desktop_test {

// A display of 1600×900 pixels that nobody sees, on a number that nobody else uses, with a home,
// a runtime folder and a session bus of its own.
class Session {
 public:
  explicit Session(std::vector<std::string> serverOptions = {});

  [[nodiscard]] const std::string& display() const { return display_; }
  // For programs of this session.
  [[nodiscard]] const Environment& environment() const { return environment_; }
  [[nodiscard]] std::unique_ptr<ChildProcess> start(std::vector<std::string> command) const;
  void endServer() { server_.reset(); }
  // As a crash ends it; what it leaves behind stays.
  void killServer();
  // Starts another one under the number of the last.
  void startServerAgain();
  [[nodiscard]] ChildProcess& server() { return *server_; }

  // Xfce's window manager, composing or not. Answers when it manages; a second call replaces it.
  void startWindowManager(bool compositing);
  void endWindowManager() { windowManager_.reset(); }
  void killWindowManager();
  // Openbox, in place of the window manager that is there. Answers when it manages.
  void startOpenbox();
  // Xfce's desktop, with its picture and no icons. Answers when its picture and its window are
  // there.
  void startDesktop();

 private:
  void startServer(const std::vector<std::string>& options);
  void startBus();
  void manageWith(std::vector<std::string> command, bool compositing);
  void hideIcons() const;

  ScratchFolder folder_;
  std::string display_;
  Environment environment_;
  std::unique_ptr<ChildProcess> server_;
  std::unique_ptr<ChildProcess> bus_;
  std::unique_ptr<ChildProcess> windowManager_;
  std::unique_ptr<ChildProcess> desktop_;
};

}  // namespace orvane::desktop_test
