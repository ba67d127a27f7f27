#include "linux/settingswindow/gtk/source_rows.h"

#include <giomm/simpleactiongroup.h>
#include <gtkmm/checkbutton.h>
#include <gtkmm/label.h>
#include <gtkmm/noselection.h>
#include <gtkmm/tooltip.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "linux/settingswindow/gtk/accessible.h"
#include "linux/settingswindow/gtk/row_changes.h"

namespace orvane::window {
namespace {

// The widget of whichever row is bound to it.
class RowToggle final : public Gtk::CheckButton {
 public:
  RowToggle(const std::string& listTitle, const SourceRows::Toggled& toggled)
      : listTitle_(listTitle), toggled_(toggled) {
    set_halign(Gtk::Align::START);
    label_.set_ellipsize(Pango::EllipsizeMode::END);
    label_.set_xalign(0);
    label_.set_single_line_mode();
    set_child(label_);
    set_has_tooltip();
    signal_query_tooltip().connect(sigc::mem_fun(*this, &RowToggle::tellWholeName), false);
    signal_toggled().connect([this] {
      if (row_ && !isShowing_) toggled_(row_->row().key, get_active());
    });
    offerAction();
  }

  void bind(const Glib::RefPtr<SourceRow>& row) {
    row_ = row;
    changed_ = row->signalChanged().connect([this] { show(); });
    show();
  }
  void unbind() {
    changed_.disconnect();
    row_.reset();
  }

 private:
  // The toolkit tells screen readers of a widget's actions, but has none for a check button.
  void offerAction() {
    const auto actions = Gio::SimpleActionGroup::create();
    actions->add_action("toggle", [this] { activate(); });
    insert_action_group("row", actions);
  }
  void show() {
    isShowing_ = true;
    const FormRow& row = row_->row();
    if (label_.get_text().raw() != row.label) label_.set_text(row.label);
    setAccessibleLabel(*this, row.label.empty() ? listTitle_ : row.label);
    set_active(row.isOn);
    isShowing_ = false;
  }
  bool tellWholeName(int, int, bool, const Glib::RefPtr<Gtk::Tooltip>& tooltip) {
    if (!label_.get_layout()->is_ellipsized()) return false;
    tooltip->set_text(label_.get_text());
    return true;
  }

  const std::string& listTitle_;
  const SourceRows::Toggled& toggled_;
  Gtk::Label label_;
  Glib::RefPtr<SourceRow> row_;
  sigc::connection changed_;
  bool isShowing_ = false;
};

RowToggle* toggleOf(const Glib::RefPtr<Gtk::ListItem>& item) {
  return dynamic_cast<RowToggle*>(item->get_child());
}

int points(double length) { return static_cast<int>(std::lround(length)); }

}  // namespace

void SourceRow::set(const FormRow& row) {
  if (row_ == row) return;
  row_ = row;
  changed_.emit();
}

SourceRows::SourceRows(std::string title, double rowSpacing, double padding, Toggled toggled)
    : title_(std::move(title)),
      rowSpacing_(rowSpacing),
      padding_(padding),
      toggled_(std::move(toggled)) {
  add_css_class("orvane-rows");
  set_factory(makeFactory());
  set_model(Gtk::NoSelection::create(model_));
  signal_mnemonic_activate().connect(
      [this](bool) { return child_focus(Gtk::DirectionType::TAB_FORWARD); }, false);
}

// The rows let go of their items while there is still somebody to hear of it.
SourceRows::~SourceRows() { set_model({}); }

Glib::RefPtr<Gtk::ListItemFactory> SourceRows::makeFactory() {
  auto factory = Gtk::SignalListItemFactory::create();
  factory->signal_setup().connect([this](const Item& item) {
    item->set_activatable(false);
    item->set_selectable(false);
    item->set_child(*Gtk::make_managed<RowToggle>(title_, toggled_));
  });
  factory->signal_bind().connect([this](const Item& item) { bind(item); });
  factory->signal_unbind().connect([this](const Item& item) { unbind(item); });
  return factory;
}

void SourceRows::bind(const Item& item) {
  const auto row = std::dynamic_pointer_cast<SourceRow>(item->get_item());
  auto* toggle = toggleOf(item);
  if (!row || !toggle) return;
  toggle->bind(row);
  bound_.push_back(item);
  place(item);
}

void SourceRows::unbind(const Item& item) {
  if (auto* toggle = toggleOf(item)) toggle->unbind();
  std::erase(bound_, item);
}

// Each row has half of the space to its neighbours, and the outermost ones that to the edge.
void SourceRows::place(const Item& item) const {
  auto* toggle = item->get_child();
  if (!toggle) return;
  const bool isFirst = item->get_position() == 0;
  const bool isLast = item->get_position() + 1 == model_->get_n_items();
  toggle->set_margin_start(points(padding_));
  toggle->set_margin_end(points(padding_));
  toggle->set_margin_top(points(isFirst ? padding_ : rowSpacing_ / 2));
  toggle->set_margin_bottom(points(isLast ? padding_ : rowSpacing_ / 2));
}

void SourceRows::show(const std::vector<FormRow>& rows) {
  for (const auto& [position, removed, inserted] : replacementsBetween(shown_, rows)) {
    std::vector<Glib::RefPtr<SourceRow>> objects;
    objects.reserve(inserted.size());
    for (const auto& row : inserted)
      objects.push_back(Glib::make_refptr_for_instance(new SourceRow(row)));
    model_->splice(static_cast<guint>(position), static_cast<guint>(removed), objects);
  }
  for (guint i = 0; i < rows.size(); ++i) model_->get_item(i)->set(rows[i]);
  shown_ = rows;
  for (const auto& item : bound_) place(item);
}

}  // namespace orvane::window
