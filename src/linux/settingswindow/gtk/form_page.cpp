#include "linux/settingswindow/gtk/form_page.h"

#include <glibmm/binding.h>
#include <gtkmm/gestureclick.h>
#include <gtkmm/label.h>

#include <cmath>

#include "linux/settingswindow/gtk/accessible.h"

namespace orvane::window {
namespace {

constexpr int kLeastRowHeight = 36;
// Between a section's title and what belongs to it.
constexpr int kBelowTitle = 8;

int points(double length) { return static_cast<int>(std::lround(length)); }

Gtk::Label& makeLabel(const std::string& markedText) {
  auto* label = Gtk::make_managed<Gtk::Label>();
  label->set_use_underline();
  label->set_label(markedText);
  label->set_xalign(0);
  label->set_wrap();
  label->set_natural_wrap_mode(Gtk::NaturalWrapMode::NONE);
  return *label;
}

}  // namespace

FormPage::FormPage(const Form& form, const FormTab& tab, Mnemonics mnemonics,
                   const FormHands& hands)
    : rowPadding_(points(form.controlSpacing / 2)),
      spacing_(points(form.controlSpacing)),
      isSideBySide_(tab.isSideBySide),
      mnemonics_(std::move(mnemonics)) {
  set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
  column_.set_spacing(points(form.spacing));
  column_.set_margin(points(form.tabPadding));
  for (const auto& section : tab.sections) addSection(section, hands);
  set_child(column_);
}

ControlWidget* FormPage::control(const std::string& key) const {
  const auto found = controls_.find(key);
  return found == controls_.end() ? nullptr : found->second.get();
}

std::map<std::string, Glib::RefPtr<Gtk::Adjustment>> FormPage::scrollPositions() const {
  std::map<std::string, Glib::RefPtr<Gtk::Adjustment>> positions;
  positions[""] = std::const_pointer_cast<Gtk::Adjustment>(get_vadjustment());
  for (const auto& [key, control] : controls_) {
    if (auto position = control->scrollPosition()) positions[key] = position;
  }
  return positions;
}

ControlWidget& FormPage::make(const FormControl& control, const FormHands& hands) {
  auto& place = controls_[control.key];
  place = makeControlWidget(control, hands);
  place->takeLetters(mnemonics_);
  return *place;
}

// A control that is called like its section needs no label of its own.
void FormPage::name(Gtk::Widget& target, const std::string& label, Gtk::Label* title) {
  if (title && !title->get_mnemonic_widget() && title->get_text().raw() == label) {
    title->set_mnemonic_widget(target);
  } else {
    setAccessibleLabel(target, label);
  }
}

// Neighbouring rows share a card.
void FormPage::addSection(const FormSection& section, const FormHands& hands) {
  auto& box = *Gtk::make_managed<Gtk::Box>(
      isSideBySide_ ? Gtk::Orientation::HORIZONTAL : Gtk::Orientation::VERTICAL,
      section.title.empty() ? spacing_ : kBelowTitle);
  box.set_homogeneous(isSideBySide_);
  Gtk::Label* title = section.title.empty() ? nullptr : &addTitle(section.title);
  if (title) box.append(*title);
  Gtk::Box* card = nullptr;
  for (const auto& control : section.controls) {
    ControlWidget& made = make(control, hands);
    if (made.place() == ControlPlace::row) {
      if (!card) card = &addCard(box);
      addRow(*card, control.label, made);
      continue;
    }
    card = nullptr;
    if (made.target()) name(*made.target(), control.label, title);
    box.append(made.widget());
  }
  column_.append(box);
}

Gtk::Label& FormPage::addTitle(const std::string& title) {
  Gtk::Label& label = makeLabel(mnemonics_.mark(title));
  label.add_css_class("orvane-headline");
  return label;
}

Gtk::Box& FormPage::addCard(Gtk::Box& column) {
  auto& card = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
  card.add_css_class("orvane-card");
  column.append(card);
  return card;
}

void FormPage::addRow(Gtk::Box& card, const std::string& text, ControlWidget& control) {
  auto& row = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, spacing_);
  row.add_css_class("orvane-row");
  row.set_size_request(-1, kLeastRowHeight);
  Gtk::Label& label = makeLabel(mnemonics_.mark(text));
  label.set_hexpand();
  label.set_margin_top(rowPadding_);
  label.set_margin_bottom(rowPadding_);
  if (control.target()) label.set_mnemonic_widget(*control.target());
  Glib::Binding::bind_property(control.widget().property_sensitive(), label.property_sensitive(),
                               Glib::Binding::Flags::SYNC_CREATE);
  auto click = Gtk::GestureClick::create();
  click->signal_released().connect([&control](int, double, double) { control.activate(); });
  label.add_controller(click);
  row.append(label);
  row.append(control.widget());
  card.append(row);
}

}  // namespace orvane::window
