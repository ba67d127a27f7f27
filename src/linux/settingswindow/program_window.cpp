#include "linux/settingswindow/program_window.h"

#include <chrono>
#include <iostream>
#include <utility>
#include <variant>

namespace orvane::host {
namespace {

using Cause = WindowEnding::Cause;

// How long the program is kept after its window was closed: somebody who sets something up often
// comes back soon.
constexpr std::chrono::seconds kIdle{30};
// Twice that long the program may take to acknowledge something. In two parts, since the clock goes
// on while the machine sleeps, and the program does not.
constexpr std::chrono::seconds kHalfOfPatience{10};
// How long a program may take to end when there is nothing more to talk about.
constexpr std::chrono::seconds kFarewell{5};

}  // namespace

ProgramWindow::ProgramWindow(std::shared_ptr<const FormWindowsOptions> options,
                             MainActor& mainActor, unsigned styleMask)
    : options_(std::move(options)), mainActor_(mainActor), styleMask_(styleMask) {}

void ProgramWindow::setContentView(std::shared_ptr<FormView> view) {
  view_ = std::move(view);
  changes_ = {};
  if (!isVisible_) return;
  follow();
  run_->conversation->formChanged();
  goOnLater();
}

void ProgramWindow::ask() {
  isAsked_ = true;
  goOnLater();
}

// What happens in one turn of the loop is told at once.
void ProgramWindow::goOnLater() {
  if (std::exchange(isGoingOn_, true)) return;
  mainActor_.post([this, alive = std::weak_ptr(alive_)] {
    if (alive.expired()) return;
    isGoingOn_ = false;
    goOn();
  });
}

void ProgramWindow::goOn() {
  if (!view_) return;
  if (std::exchange(isAsked_, false)) present();
  if (!run_ || !isVisible_) return;
  const bool wasWaiting = run_->conversation->isWaiting();
  if (!run_->conversation->sayNext(*view_)) return ended({Cause::tooMuch});
  if (!wasWaiting && run_->conversation->isWaiting()) beginPatience();
}

void ProgramWindow::present() {
  if (!run_ && !start()) return;
  idle_ = {};
  run_->conversation->askToShow(showing());
  if (std::exchange(isVisible_, true)) return;
  follow();
}

bool ProgramWindow::start() {
  auto started =
      startWindowProgram(options_->programPath, [this](int status) { programEnded(status); });
  if (!started.program) {
    options_->tell(title, sentenceAbout({Cause::notStarted, started.error}, false));
    return false;
  }
  run_ = std::make_unique<Run>();
  run_->program = std::move(started.program);
  run_->channel.emplace(std::move(started.socket),
                        MessageChannel::Listener{
                            [this](const formwire::WindowMessage& message) { received(message); },
                            [this](ChannelLoss loss) { channelLost(loss); }});
  const auto say = [&channel = *run_->channel](const formwire::BoardMessage& message) {
    auto frame = formwire::encode(message);
    if (frame) channel.write(std::move(*frame));
    return frame.has_value();
  };
  run_->conversation.emplace(say, options_->drawPreview);
  return true;
}

formwire::Show ProgramWindow::showing() const {
  formwire::Show show;
  show.title = title;
  show.style = {(styleMask_ & FormWindowStyleMask::titled) != 0,
                (styleMask_ & FormWindowStyleMask::closable) != 0,
                (styleMask_ & FormWindowStyleMask::miniaturizable) != 0,
                titlebarAppearsTransparent};
  show.state = state_;
  show.isCentered = isCentered_;
  show.activationToken = options_->takeActivationToken();
  return show;
}

void ProgramWindow::follow() {
  if (!view_) return;
  changes_ = view_->onChange([this] {
    run_->conversation->formChanged();
    goOnLater();
  });
}

// ---- What the program says

void ProgramWindow::received(const formwire::WindowMessage& message) {
  std::visit([this](const auto& heardMessage) { heard(heardMessage); }, message);
}

void ProgramWindow::heard(const formwire::Edited& edited) {
  if (!run_->conversation->edited(edited.number)) return ended({Cause::nonsense});
  if (view_) view_->edit(edited.edit);
  goOnLater();
}

void ProgramWindow::heard(const formwire::Closed&) {
  if (!isVisible_ || run_->conversation->isShowing()) return;
  isVisible_ = false;
  changes_ = {};
  if (isReleasedWhenClosed) {
    view_.reset();
    return letGo();
  }
  idle_ = mainActor_.after(kIdle, [this] { letGo(); });
}

void ProgramWindow::heard(const formwire::State& state) { state_ = state.state; }

void ProgramWindow::heard(const formwire::PreviewScale& scale) {
  run_->conversation->previewScale(scale.scale);
  goOnLater();
}

void ProgramWindow::heard(const formwire::Ack& ack) {
  if (!run_->conversation->acknowledged(ack.sequence)) return ended({Cause::nonsense});
  run_->patience = {};
  if (run_->conversation->isWaiting()) return beginPatience();
  goOnLater();
}

// ---- How the program ends

void ProgramWindow::beginPatience() {
  run_->isLate = false;
  run_->patience = mainActor_.after(kHalfOfPatience, [this] { stillWaiting(); });
}

void ProgramWindow::stillWaiting() {
  if (run_->isLate) return ended({Cause::silent});
  run_->isLate = true;
  run_->patience = mainActor_.after(kHalfOfPatience, [this] { stillWaiting(); });
}

void ProgramWindow::channelLost(ChannelLoss loss) {
  if (loss == ChannelLoss::nonsense) return ended({Cause::nonsense});
  run_->farewell = mainActor_.after(kFarewell, [this] { ended({Cause::hungUp}); });
}

// What it said before it ended still counts.
void ProgramWindow::programEnded(int status) {
  run_->channel->readAll();
  if (run_) ended(endingOf(status));
}

void ProgramWindow::ended(WindowEnding ending) {
  const auto run = std::move(run_);
  changes_ = {};
  idle_ = {};
  isVisible_ = false;
  const bool wasShown = run->conversation->wasShown();
  const auto sentence = sentenceAbout(ending, wasShown);
  if (!wasShown) return options_->tell(title, sentence);
  if (!sentence.empty()) std::cerr << "orvane: " << sentence << '\n';
  // Somebody asked for the window, and got one that was dying.
  if (run->conversation->isShowing()) ask();
}

void ProgramWindow::letGo() {
  const auto run = std::move(run_);
  idle_ = {};
  leaving_ = std::move(run->program);
  leaving_->whenEnded([this](int) {
    leavingLimit_ = {};
    leaving_.reset();
  });
  leavingLimit_ = mainActor_.after(kFarewell, [this] { leaving_.reset(); });
}

}  // namespace orvane::host
