#include "linux/settingswindow/gtk/form_pane.h"

#include <cmath>

#include "linux/settingswindow/gtk/text_label.h"

namespace orvane::window {
namespace {

// Between the tabs' labels and what belongs to them.
constexpr int kTabSpacing = 6;
constexpr unsigned kTurnMilliseconds = 120;

int points(double length) { return static_cast<int>(std::lround(length)); }

}  // namespace

FormPane::FormPane(const Form& form, const FormHands& hands, const std::function<void()>& done)
    : Gtk::Box(Gtk::Orientation::VERTICAL, points(form.spacing)),
      hands_(hands),
      tabs_(form.tabs, form.header.title.text, mnemonics_,
            [this](const std::string& tag) { chooseTab(tag); }) {
  set_margin_start(points(form.padding));
  set_margin_end(points(form.padding));
  set_margin_bottom(points(form.padding));
  const std::string doneLabel = mnemonics_.mark(form.footer.done.label);
  addTabs(form);
  addFooter(form.footer, doneLabel);
  done_.signal_clicked().connect(done);
}

void FormPane::addTabs(const Form& form) {
  for (const auto& tab : form.tabs) {
    auto& page = pageOf_[tab.tag];
    page = std::make_unique<FormPage>(form, tab, mnemonics_, hands_);
    pages_.add(*page, tab.tag);
  }
  pages_.set_transition_type(Gtk::StackTransitionType::CROSSFADE);
  pages_.set_transition_duration(kTurnMilliseconds);
  pages_.set_vexpand();
  pages_.add_css_class("orvane-pages");
  auto& box = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, kTabSpacing);
  box.append(tabs_);
  box.append(pages_);
  append(box);
  show({false, form.selectedTab, {}});
}

void FormPane::addFooter(const FormFooter& footer, const std::string& markedDone) {
  auto& note = *Gtk::make_managed<TextLabel>(footer.note);
  note.set_hexpand();
  auto& label = *Gtk::make_managed<Gtk::Label>();
  label.set_use_underline();
  label.set_label(markedDone);
  label.set_mnemonic_widget(done_);
  done_.set_child(label);
  done_.set_sensitive(footer.done.isEnabled);
  if (footer.done.isDefaultAction) done_.add_css_class("suggested-action");
  done_.add_css_class("orvane-done");
  done_.set_valign(Gtk::Align::CENTER);
  footer_.append(note);
  footer_.append(done_);
  append(footer_);
}

ControlWidget* FormPane::control(const std::string& key) const {
  for (const auto& [tag, page] : pageOf_) {
    if (auto* control = page->control(key)) return control;
  }
  return nullptr;
}

void FormPane::chooseTab(const std::string& tag) {
  pages_.set_visible_child(tag);
  hands_.edit({Form::selectedTabKey, tag});
}

void FormPane::show(const FormChanges& changes) {
  if (changes.selectedTab && pageOf_.contains(*changes.selectedTab)) {
    tabs_.choose(*changes.selectedTab);
    pages_.set_visible_child(*changes.selectedTab);
  }
  for (const auto& changed : changes.controls) {
    if (auto* place = control(changed.key)) place->show(changed);
  }
}

void FormPane::showPicture(const std::string& key, const Glib::RefPtr<Gdk::Texture>& picture) {
  if (auto* place = control(key)) place->showPicture(picture);
}

FormPane::ScrollPositions FormPane::scrollPositions() const {
  ScrollPositions positions;
  for (const auto& [tag, page] : pageOf_) {
    for (const auto& [key, position] : page->scrollPositions()) {
      positions[key.empty() ? tag : tag + '/' + key] = position;
    }
  }
  return positions;
}

}  // namespace orvane::window
