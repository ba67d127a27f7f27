#pragma once

#include <sigc++/connection.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "linux/settingswindow/gtk/look.h"
#include "linux/settingswindow/gtk/settings_window.h"
#include "linux/settingswindow/gtk/shown_form.h"
#include "linux/settingswindow/wire/messages.h"

namespace orvane::window {

// The window's side of the conversation with the board: shows what it is told, and tells what the
// user does. There is a window from the first showing on, hidden or not.
class Conversation {
 public:
  using Send = std::function<void(const formwire::WindowMessage&)>;

  explicit Conversation(Send send) : send_(std::move(send)) {}
  ~Conversation();
  Conversation(const Conversation&) = delete;
  Conversation& operator=(const Conversation&) = delete;

  void hear(formwire::BoardMessage message);
  // The accent that the desktop names, or none, for this window and those to come.
  void setAccent(const std::optional<Gdk::RGBA>& accent);
  // Null before the first showing.
  [[nodiscard]] SettingsWindow* window() const { return window_.get(); }

 private:
  void take(const formwire::Show& show);
  void take(const formwire::Update& update);
  void take(const formwire::Preview& preview);
  void makeWindow(const formwire::Show& show);
  void tell(Form form, std::uint64_t lastEdit);
  void apply(const FormChanges& changes);
  void showPictures();

  void edited(FormEdit edit);
  void held(const std::string& key, bool isHeld);
  void closing();
  void closed();
  void tellStateSoon();
  void tellState();
  void tellPreviewScale();

  const Send send_;
  std::optional<ShownForm> form_;
  std::unique_ptr<SettingsWindow> window_;
  std::unique_ptr<Look> look_;
  std::optional<Gdk::RGBA> accent_;
  std::map<std::string, Glib::RefPtr<Gdk::Texture>> pictures_;
  std::uint64_t lastEdit_ = 0;
  double toldScale_ = 0;
  formwire::WindowState toldState_;
  sigc::connection stateRest_;
};

}  // namespace orvane::window
