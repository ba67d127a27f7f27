#include "linux/settingswindow/gtk/conversation.h"

#include <gdkmm/memorytexture.h>
#include <glibmm/bytes.h>
#include <glibmm/main.h>

#include <algorithm>
#include <utility>
#include <variant>

#include "linux/settingswindow/gtk/focus_token.h"
#include "linux/settingswindow/gtk/x11_position.h"

namespace orvane::window {
namespace {

// How long nothing may have moved or scrolled before it counts as come to rest.
constexpr unsigned kRestMilliseconds = 300;
constexpr gsize kBytesPerPixel = 4;

Glib::RefPtr<Gdk::Texture> textureOf(const formwire::Preview& preview) {
  return Gdk::MemoryTexture::create(
      static_cast<int>(preview.width), static_cast<int>(preview.height),
      Gdk::MemoryTexture::Format::B8G8R8A8_PREMULTIPLIED,
      Glib::Bytes::create(preview.pixels.data(), preview.pixels.size()),
      preview.width * kBytesPerPixel);
}

bool hasPreview(const FormTab& tab) {
  return findControl(tab, [](const FormControl& control) {
    return std::holds_alternative<FormPreview>(control.content);
  });
}

bool showsPreview(const Form& form) {
  return std::any_of(form.tabs.begin(), form.tabs.end(), [&](const FormTab& tab) {
    return tab.tag == form.selectedTab && hasPreview(tab);
  });
}

}  // namespace

// What widgets still tell while they go finds no window any more, and comes to nothing.
Conversation::~Conversation() {
  const auto going = std::move(window_);
  stateRest_.disconnect();
}

void Conversation::hear(formwire::BoardMessage message) {
  const auto sequence = std::visit([](const auto& told) { return told.sequence; }, message);
  std::visit([this](const auto& told) { take(told); }, message);
  send_(formwire::Ack{sequence});
  tellPreviewScale();
}

void Conversation::take(const formwire::Show& show) {
  if (window_) {
    tell(show.form, show.lastEdit);
  } else {
    makeWindow(show);
  }
  window_->setStyle(show.title, show.style);
  if (!show.activationToken.empty()) useFocusToken(*window_, show.activationToken);
  const bool wasVisible = window_->get_visible();
  window_->present();
  if (wasVisible) return;
  if (toldState_.position || show.isCentered) moveTo(*window_, toldState_.position);
}

void Conversation::take(const formwire::Update& update) {
  if (form_) tell(update.form ? *update.form : form_->told(), update.lastEdit);
}

void Conversation::take(const formwire::Preview& preview) {
  pictures_[preview.key] = textureOf(preview);
  if (window_) window_->showPicture(preview.key, pictures_[preview.key]);
}

void Conversation::makeWindow(const formwire::Show& show) {
  form_.emplace(show.form);
  window_ = std::make_unique<SettingsWindow>(
      SettingsWindow::Hands{{[this](FormEdit edit) { edited(std::move(edit)); },
                             [this](const std::string& key, bool isHeld) { held(key, isHeld); }},
                            [this] { closing(); },
                            [this] { closed(); },
                            [this] { tellStateSoon(); }});
  look_ = std::make_unique<Look>(*window_);
  look_->setAccent(accent_);
  window_->setStyle(show.title, show.style);
  window_->make(show.form);
  window_->setScrollOffsets(show.state.scrollOffsets);
  toldState_ = show.state;
}

void Conversation::tell(Form form, std::uint64_t lastEdit) {
  apply(form_->tell(std::move(form), lastEdit));
}

void Conversation::apply(const FormChanges& changes) {
  if (!changes.isAnotherForm) return window_->show(changes);
  const auto offsets = window_->scrollOffsets();
  window_->make(form_->form());
  window_->setScrollOffsets(offsets);
  showPictures();
}

void Conversation::showPictures() {
  for (const auto& [key, picture] : pictures_) window_->showPicture(key, picture);
}

void Conversation::edited(FormEdit edit) {
  if (!window_) return;
  form_->edit(edit, ++lastEdit_);
  send_(formwire::Edited{lastEdit_, std::move(edit)});
  tellPreviewScale();
}

void Conversation::held(const std::string& key, bool isHeld) {
  if (!window_) return;
  if (isHeld) return form_->hold(key);
  apply(form_->letGo(key));
}

void Conversation::closing() {
  stateRest_.disconnect();
  tellState();
}

void Conversation::closed() {
  send_(formwire::Closed{});
  tellPreviewScale();
}

void Conversation::tellStateSoon() {
  if (!window_) return;
  tellPreviewScale();
  stateRest_.disconnect();
  stateRest_ = Glib::signal_timeout().connect(
      [this] {
        if (window_->get_visible()) tellState();
        return false;
      },
      kRestMilliseconds);
}

void Conversation::tellState() {
  formwire::WindowState state = toldState_;
  state.scrollOffsets = window_->scrollOffsets();
  if (const auto position = positionOf(*window_)) state.position = position;
  if (state == toldState_) return;
  toldState_ = state;
  send_(formwire::State{std::move(state)});
}

void Conversation::tellPreviewScale() {
  if (!window_) return;
  const bool isSeen = window_->get_visible() && showsPreview(form_->form());
  const double scale = isSeen ? window_->get_scale_factor() : 0;
  if (std::exchange(toldScale_, scale) != scale) send_(formwire::PreviewScale{scale});
}

void Conversation::setAccent(const std::optional<Gdk::RGBA>& accent) {
  accent_ = accent;
  if (look_) look_->setAccent(accent);
}

}  // namespace orvane::window
