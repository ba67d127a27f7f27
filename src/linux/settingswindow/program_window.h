#pragma once

#include <memory>
#include <optional>
#include <string>

#include "foundation/main_actor.h"
#include "linux/settingswindow/form_conversation.h"
#include "linux/settingswindow/form_windows.h"
#include "linux/settingswindow/message_channel.h"
#include "linux/settingswindow/window_ending.h"
#include "linux/settingswindow/window_program.h"
#include "platform/form_window.h"

namespace orvane::host {

// A form window that another program shows. Main thread only.
class ProgramWindow final : public FormWindow {
 public:
  ProgramWindow(std::shared_ptr<const FormWindowsOptions> options, MainActor& mainActor,
                unsigned styleMask);
  ProgramWindow(const ProgramWindow&) = delete;

  void center() override { isCentered_ = true; }
  void setContentView(std::shared_ptr<FormView> view) override;
  void show() override { ask(); }
  void makeKeyAndOrderFront() override { ask(); }

 private:
  // One run of the program, from its start until it is let go of or ends by itself.
  struct Run {
    std::unique_ptr<WindowProgram> program;
    std::optional<MessageChannel> channel;
    std::optional<FormConversation> conversation;
    Subscription patience;  // for what is to be acknowledged
    bool isLate = false;
    Subscription farewell;  // from the socket's end to the program's
  };

  void ask();
  void goOnLater();
  void goOn();
  void present();
  [[nodiscard]] bool start();
  [[nodiscard]] formwire::Show showing() const;
  void follow();

  void received(const formwire::WindowMessage& message);
  void heard(const formwire::Edited& edited);
  void heard(const formwire::Closed& closed);
  void heard(const formwire::State& state);
  void heard(const formwire::PreviewScale& scale);
  void heard(const formwire::Ack& ack);

  void beginPatience();
  void stillWaiting();
  void channelLost(ChannelLoss loss);
  void programEnded(int status);
  void ended(WindowEnding ending);
  void letGo();

  const std::shared_ptr<const FormWindowsOptions> options_;
  MainActor& mainActor_;
  const unsigned styleMask_;
  formwire::WindowState state_;
  bool isCentered_ = false;
  std::shared_ptr<FormView> view_;
  Subscription changes_;

  bool isAsked_ = false;    // to come to the front, and the program was not told yet
  bool isVisible_ = false;  // as far as is known
  bool isGoingOn_ = false;  // a turn of the loop is asked for
  std::unique_ptr<Run> run_;
  Subscription idle_;  // from the window's closing to the program's end
  std::unique_ptr<WindowProgram> leaving_;
  Subscription leavingLimit_;
  const std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace orvane::host
