#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/label.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/stack.h>

#include <cmath>

#include "linux/settingswindow/gtk/accessible.h"
#include "linux/settingswindow/gtk/control_widgets.h"
#include "linux/settingswindow/gtk/enabling.h"
#include "linux/settingswindow/gtk/list_area.h"
#include "linux/settingswindow/gtk/source_rows.h"
#include "linux/settingswindow/gtk/symbol_image.h"

namespace orvane::window {
namespace {

constexpr int kEmptySymbolHeight = 40;

// A symbol over a text, in the middle.
class EmptyState final : public Gtk::Box {
 public:
  explicit EmptyState(const FormEmptyState& state)
      : Gtk::Box(Gtk::Orientation::VERTICAL, 12), symbol_(state.symbol, kEmptySymbolHeight) {
    set_valign(Gtk::Align::CENTER);
    set_halign(Gtk::Align::CENTER);
    set_margin(24);
    add_css_class("orvane-secondary");
    append(symbol_);
    text_.set_text(state.text);
    text_.set_wrap();
    text_.set_justify(Gtk::Justification::CENTER);
    append(text_);
  }

 private:
  SymbolImage symbol_;
  Gtk::Label text_;
};

class SourceListWidget final : public ControlWidget {
 public:
  SourceListWidget(const FormControl& control, const FormHands& hands)
      : list_(std::get<FormSourceList>(control.content)),
        hands_(hands),
        rows_(control.label, list_.rowSpacing, list_.padding,
              [this](const std::string& key, bool isOn) {
                hands_.edit({key, isOn});
              }),
        area_(list_.minHeight, list_.height) {
    makeHeader(control.label);
    makeArea();
    column_.set_hexpand();
    column_.set_valign(Gtk::Align::START);
    column_.append(header_);
    column_.append(area_);
    list_.emptyState.reset();
    show(control);
  }

  ControlPlace place() const override { return ControlPlace::wide; }
  Gtk::Widget& widget() override { return column_; }
  Gtk::Widget* target() override { return nullptr; }
  Glib::RefPtr<Gtk::Adjustment> scrollPosition() override { return scroller_.get_vadjustment(); }

  void takeLetters(Mnemonics& mnemonics) override {
    title_.set_text_with_mnemonic(mnemonics.mark(title_.get_text().raw()));
    allLabel_.set_text_with_mnemonic(mnemonics.mark(list_.all.label));
  }

  void show(const FormControl& control) override {
    const auto& list = std::get<FormSourceList>(control.content);
    setEnabled(all_, control.isEnabled && list.all.isEnabled);
    setEnabled(rows_, control.isEnabled);
    rows_.show(list.rows);
    if (list.emptyState && list.emptyState != list_.emptyState) showEmpty(*list.emptyState);
    list_.emptyState = list.emptyState;
    stack_.set_visible_child(list.emptyState ? "empty" : "rows");
  }

 private:
  void makeHeader(const std::string& title) {
    title_.set_mnemonic_widget(rows_);
    title_.set_text(title);
    title_.set_xalign(0);
    title_.set_hexpand();
    title_.add_css_class("orvane-headline");
    allLabel_.set_mnemonic_widget(all_);
    allLabel_.set_text(list_.all.label);
    all_.set_child(allLabel_);
    all_.add_css_class("orvane-small");
    setAccessibleDescription(all_, title);
    all_.signal_clicked().connect([this] { hands_.edit({list_.all.key, {}}); });
    header_.append(title_);
    header_.append(all_);
  }

  void makeArea() {
    scroller_.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    scroller_.set_child(rows_);
    stack_.add(scroller_, "rows");
    stack_.add(empty_, "empty");
    stack_.add_css_class("orvane-card");
    stack_.set_overflow(Gtk::Overflow::HIDDEN);
    area_.setChild(stack_);
  }

  void showEmpty(const FormEmptyState& state) {
    while (auto* child = empty_.get_first_child()) empty_.remove(*child);
    auto* content = Gtk::make_managed<EmptyState>(state);
    content->set_vexpand();
    content->set_hexpand();
    empty_.append(*content);
  }

  FormSourceList list_;
  const FormHands& hands_;
  Gtk::Label title_;
  Gtk::Label allLabel_;
  Gtk::Button all_;
  Gtk::Box header_{Gtk::Orientation::HORIZONTAL, 8};
  SourceRows rows_;
  Gtk::ScrolledWindow scroller_;
  Gtk::Box empty_;
  Gtk::Stack stack_;
  ListArea area_;
  Gtk::Box column_{Gtk::Orientation::VERTICAL, 8};
};

}  // namespace

std::unique_ptr<ControlWidget> makeSourceList(const FormControl& control, const FormHands& hands) {
  return std::make_unique<SourceListWidget>(control, hands);
}

}  // namespace orvane::window
