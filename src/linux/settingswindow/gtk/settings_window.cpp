#include "linux/settingswindow/gtk/settings_window.h"

#include <glibmm/main.h>
#include <gtkmm/button.h>
#include <gtkmm/eventcontrollerkey.h>
#include <gtkmm/popover.h>
#include <gtkmm/togglebutton.h>

#include <cmath>
#include <utility>

namespace orvane::window {
namespace {

constexpr const char* kIconName = "org.orvane.Orvane";
// From the window's upper edge to a header in the title bar.
constexpr int kAboveHeader = 12;

int points(double length) { return static_cast<int>(std::lround(length)); }

bool isReturn(guint key) {
  return key == GDK_KEY_Return || key == GDK_KEY_KP_Enter || key == GDK_KEY_ISO_Enter;
}

bool isIn(Gtk::Widget& widget, GType ancestor) { return widget.get_ancestor(ancestor) != nullptr; }

// A tab's label is a button that is chosen, not pressed.
bool isPushButton(Gtk::Widget& widget) {
  return dynamic_cast<Gtk::Button*>(&widget) && !dynamic_cast<Gtk::ToggleButton*>(&widget);
}

}  // namespace

SettingsWindow::SettingsWindow(Hands hands) : hands_(std::move(hands)) {
  add_css_class("orvane-settings");
  set_resizable(false);
  set_icon_name(kIconName);
  signal_close_request().connect([this] { return leave(); }, false);
  property_scale_factor().signal_changed().connect([this] { hands_.moved(); });
  auto keys = Gtk::EventControllerKey::create();
  keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
  keys->signal_key_pressed().connect(
      [this](guint key, guint, Gdk::ModifierType modifiers) { return pressed(key, modifiers); },
      false);
  add_controller(keys);
}

// What a title bar is like is settled when the form is first made.
void SettingsWindow::setStyle(const std::string& title, const formwire::WindowStyle& style) {
  set_title(title);
  set_decorated(style.isTitled);
  set_deletable(style.isClosable);
  style_ = style;
}

void SettingsWindow::make(const Form& form) {
  isReturnDone_ = form.footer.done.isDefaultAction;
  // What the one before still tells while it goes is answered by the one that is here already.
  const auto before =
      std::exchange(pane_, std::make_unique<FormPane>(form, hands_.form, [this] { close(); }));
  set_child(*pane_);
  placeHeader(form);
  set_default_size(points(form.size.width), points(form.size.height));
  followScrolling();
}

// Our own scrolling comes after its wish was taken, so that whatever scrolls a part of which a wish
// still waits is the user.
void SettingsWindow::followScrolling() {
  for (const auto& [name, position] : pane_->scrollPositions()) {
    position->signal_value_changed().connect([this, name = name] {
      wantedOffsets_.giveUp(name);
      hands_.moved();
    });
    position->signal_changed().connect([this, name = name] { restoreScroll(name); });
  }
}

void SettingsWindow::placeHeader(const Form& form) {
  auto header = std::make_unique<HeaderBox>(form.header);
  if (style_.titlebarAppearsTransparent && !titleBand_ && !get_realized()) {
    titleBand_ = std::make_unique<TitleBand>(style_, points(form.padding));
    set_titlebar(*titleBand_);
  }
  if (titleBand_) {
    titleBand_->setContent(*header);
    header->set_margin_top(kAboveHeader);
    pane_->set_margin_top(points(form.spacing));
  } else {
    pane_->prepend(*header);
    pane_->set_margin_top(points(form.padding));
  }
  header_ = std::move(header);
}

void SettingsWindow::show(const FormChanges& changes) { pane_->show(changes); }

void SettingsWindow::showPicture(const std::string& key,
                                 const Glib::RefPtr<Gdk::Texture>& picture) {
  if (pane_) pane_->showPicture(key, picture);
}

WantedOffsets::Offsets SettingsWindow::scrollOffsets() const {
  auto offsets = wantedOffsets_.offsets();
  if (!pane_) return offsets;
  for (const auto& [name, position] : pane_->scrollPositions()) {
    if (position->get_value() > 0) offsets[name] = position->get_value();
  }
  return offsets;
}

void SettingsWindow::setScrollOffsets(WantedOffsets::Offsets offsets) {
  wantedOffsets_.want(std::move(offsets));
  if (!pane_) return;
  for (const auto& [name, position] : pane_->scrollPositions()) restoreScroll(name);
}

// The list that is being laid out does not want to be scrolled meanwhile.
void SettingsWindow::restoreScroll(const std::string& name) {
  if (!wantedOffsets_.isWaiting(name)) return;
  Glib::signal_idle().connect_once(
      sigc::bind(sigc::mem_fun(*this, &SettingsWindow::scrollAsWanted), name));
}

void SettingsWindow::scrollAsWanted(const std::string& name) {
  const auto positions = pane_->scrollPositions();
  const auto found = positions.find(name);
  if (found == positions.end()) return;
  const auto& position = found->second;
  const double farthest = position->get_upper() - position->get_page_size();
  if (const auto offset = wantedOffsets_.take(name, farthest)) position->set_value(*offset);
}

bool SettingsWindow::leave() {
  hands_.closing();
  set_visible(false);
  hands_.closed();
  return true;
}

// Before the control that has the focus can take the key.
bool SettingsWindow::pressed(guint key, Gdk::ModifierType modifiers) {
  const auto control = Gdk::ModifierType::CONTROL_MASK;
  const auto others = Gdk::ModifierType::ALT_MASK | Gdk::ModifierType::SUPER_MASK | control;
  if (!pane_ || (get_focus() && isIn(*get_focus(), Gtk::Popover::get_type()))) return false;
  if ((modifiers & others) == control) {
    if (key == GDK_KEY_w || key == GDK_KEY_W) return close(), true;
    if (key == GDK_KEY_Page_Down || key == GDK_KEY_Tab) return pane_->stepTab(1), true;
    if (key == GDK_KEY_Page_Up || key == GDK_KEY_ISO_Left_Tab) return pane_->stepTab(-1), true;
  }
  if ((modifiers & others) != Gdk::ModifierType{}) return false;
  if (key == GDK_KEY_Escape) return close(), true;
  return isReturn(key) && pressedReturn();
}

// A push button that has the focus is what the user means to press.
bool SettingsWindow::pressedReturn() {
  if (!isReturnDone_ || !pane_->doneButton().is_sensitive()) return false;
  if (get_focus() && isPushButton(*get_focus())) return false;
  return pane_->doneButton().activate();
}

}  // namespace orvane::window
