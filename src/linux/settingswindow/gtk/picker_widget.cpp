#include <gtkmm/box.h>
#include <gtkmm/dropdown.h>
#include <gtkmm/image.h>
#include <gtkmm/label.h>
#include <gtkmm/listitem.h>
#include <gtkmm/signallistitemfactory.h>
#include <gtkmm/stringlist.h>
#include <gtkmm/stringobject.h>

#include <algorithm>
#include <vector>

#include "linux/settingswindow/gtk/accessible.h"
#include "linux/settingswindow/gtk/control_widgets.h"
#include "linux/settingswindow/gtk/enabling.h"

namespace orvane::window {
namespace {

constexpr int kWidestTitle = 30;  // characters; what is longer is cut with an ellipsis

Glib::ustring titleOf(const Glib::RefPtr<Gtk::ListItem>& item) {
  const auto text = std::dynamic_pointer_cast<Gtk::StringObject>(item->get_item());
  return text ? text->get_string() : Glib::ustring();
}

Gtk::Label* makeTitle() {
  auto* label = Gtk::make_managed<Gtk::Label>();
  label->set_xalign(0);
  label->set_ellipsize(Pango::EllipsizeMode::END);
  label->set_single_line_mode();
  label->set_max_width_chars(kWidestTitle);
  return label;
}

// The chosen title in the button.
Glib::RefPtr<Gtk::SignalListItemFactory> titles() {
  auto factory = Gtk::SignalListItemFactory::create();
  factory->signal_setup().connect(
      [](const Glib::RefPtr<Gtk::ListItem>& item) { item->set_child(*makeTitle()); });
  factory->signal_bind().connect([](const Glib::RefPtr<Gtk::ListItem>& item) {
    if (auto* label = dynamic_cast<Gtk::Label*>(item->get_child())) label->set_text(titleOf(item));
  });
  return factory;
}

// A choice in the list that drops down, with a mark at the chosen one. The list is only as wide as
// it has to be, and a title that may be cut has to have next to nothing.
class Choice final : public Gtk::Box {
 public:
  Choice() : Gtk::Box(Gtk::Orientation::HORIZONTAL, 8) {
    title_->set_hexpand();
    append(*title_);
    mark_->set_from_icon_name("object-select-symbolic");
    append(*mark_);
  }
  void show(const Glib::ustring& title, bool isChosen) {
    const bool isLong = title.size() > kWidestTitle;
    title_->set_text(title);
    title_->set_ellipsize(isLong ? Pango::EllipsizeMode::END : Pango::EllipsizeMode::NONE);
    title_->set_width_chars(isLong ? kWidestTitle : -1);
    mark_->set_opacity(isChosen ? 1 : 0);
  }

 private:
  Gtk::Label* const title_ = makeTitle();
  Gtk::Image* const mark_ = Gtk::make_managed<Gtk::Image>();
};

class PickerWidget final : public ControlWidget {
 public:
  PickerWidget(const FormControl& control, const FormHands& hands)
      : key_(control.key), label_(control.label), hands_(hands) {
    dropDown_.set_valign(Gtk::Align::CENTER);
    dropDown_.set_factory(titles());
    dropDown_.set_list_factory(choices());
    dropDown_.set_model(titles_);
    show(control);
    dropDown_.property_selected().signal_changed().connect([this] { selected(); });
  }

  ControlPlace place() const override { return ControlPlace::row; }
  Gtk::Widget& widget() override { return dropDown_; }

  void show(const FormControl& control) override {
    isShowing_ = true;
    const auto& picker = std::get<FormPicker>(control.content);
    if (choices_ != picker.choices) offer(picker.choices);
    dropDown_.set_selected(positionOf(picker.value));
    describe(dropDown_.get_selected());
    setEnabled(dropDown_, control.isEnabled);
    isShowing_ = false;
  }

 private:
  // The button within is what has the focus, so that it has to tell everything.
  void describe(guint position) {
    auto* button = dropDown_.get_first_child();
    if (!button) return;
    setAccessibleLabel(*button, label_);
    setAccessibleDescription(*button, position < choices_.size() ? choices_[position].title : "");
  }

  Glib::RefPtr<Gtk::SignalListItemFactory> choices() {
    auto factory = Gtk::SignalListItemFactory::create();
    factory->signal_setup().connect([](const Glib::RefPtr<Gtk::ListItem>& item) {
      item->set_child(*Gtk::make_managed<Choice>());
    });
    factory->signal_bind().connect([this](const Glib::RefPtr<Gtk::ListItem>& item) {
      if (auto* choice = dynamic_cast<Choice*>(item->get_child())) {
        choice->show(titleOf(item), item->get_position() == dropDown_.get_selected());
      }
    });
    return factory;
  }

  void offer(const std::vector<FormChoice>& choices) {
    choices_ = choices;
    std::vector<Glib::ustring> texts;
    for (const auto& choice : choices_) texts.emplace_back(choice.title);
    titles_->splice(0, titles_->get_n_items(), texts);
  }

  guint positionOf(const std::string& id) const {
    const auto found = std::find_if(choices_.begin(), choices_.end(),
                                    [&](const FormChoice& choice) { return choice.id == id; });
    return found == choices_.end() ? GTK_INVALID_LIST_POSITION
                                   : static_cast<guint>(found - choices_.begin());
  }

  void selected() {
    const guint position = dropDown_.get_selected();
    if (isShowing_ || position >= choices_.size()) return;
    describe(position);
    hands_.edit({key_, choices_[position].id});
  }

  const std::string key_;
  const std::string label_;
  const FormHands& hands_;
  std::vector<FormChoice> choices_;
  Glib::RefPtr<Gtk::StringList> titles_ = Gtk::StringList::create({});
  Gtk::DropDown dropDown_;
  bool isShowing_ = false;
};

}  // namespace

std::unique_ptr<ControlWidget> makePicker(const FormControl& control, const FormHands& hands) {
  return std::make_unique<PickerWidget>(control, hands);
}

}  // namespace orvane::window
