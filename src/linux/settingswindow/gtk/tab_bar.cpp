#include "linux/settingswindow/gtk/tab_bar.h"

#include <gtkmm/box.h>
#include <gtkmm/eventcontrollerkey.h>
#include <gtkmm/label.h>

#include <algorithm>
#include <numeric>

#include "linux/settingswindow/gtk/accessible.h"
#include "linux/settingswindow/gtk/symbol_image.h"

namespace orvane::window {
namespace {

constexpr int kSymbolHeight = 18;

struct Wish {
  int least = 0;
  int natural = 0;
};

Wish wishOf(const Gtk::Widget& widget, Gtk::Orientation orientation) {
  Wish wish;
  int baseline = 0;
  widget.measure(orientation, -1, wish.least, wish.natural, baseline, baseline);
  return wish;
}

// How a width is divided among those that would have these; pixels that are left over go to the
// first.
std::vector<int> shares(std::vector<int> wishes, int width) {
  const int count = static_cast<int>(wishes.size());
  const int all = std::accumulate(wishes.begin(), wishes.end(), 0);
  const int widest = *std::max_element(wishes.begin(), wishes.end());
  const bool areEqual = widest * count <= width || all > width;
  if (areEqual) std::fill(wishes.begin(), wishes.end(), 0);
  const int rest = areEqual ? width : width - all;
  int extra = rest % count;
  for (int& share : wishes) share += rest / count + (extra-- > 0 ? 1 : 0);
  return wishes;
}

}  // namespace

TabBar::TabBar(const std::vector<FormTab>& tabs, const std::string& name, Mnemonics& mnemonics,
               Chosen chosen)
    : Glib::ObjectBase("OrvaneTabBar"), tell_(std::move(chosen)) {
  setAccessibleRole(*this, Gtk::Accessible::Role::TAB_LIST);
  setAccessibleLabel(*this, name);
  add_css_class("orvane-tabs");
  for (const auto& tab : tabs) add(tab, mnemonics);
  auto keys = Gtk::EventControllerKey::create();
  keys->signal_key_pressed().connect(
      [this](guint value, guint, Gdk::ModifierType) { return key(value); }, false);
  add_controller(keys);
}

TabBar::~TabBar() {
  for (auto& tab : tabs_) tab.button->unparent();
}

void TabBar::add(const FormTab& tab, Mnemonics& mnemonics) {
  auto button = std::make_unique<Gtk::ToggleButton>();
  setAccessibleRole(*button, Gtk::Accessible::Role::TAB);
  auto& content = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 8);
  content.set_halign(Gtk::Align::CENTER);
  content.append(*Gtk::make_managed<SymbolImage>(tab.symbol, kSymbolHeight));
  auto& label = *Gtk::make_managed<Gtk::Label>();
  label.set_use_underline();
  label.set_label(mnemonics.mark(tab.label));
  label.set_mnemonic_widget(*button);
  label.set_ellipsize(Pango::EllipsizeMode::END);
  content.append(label);
  button->set_child(content);
  if (!tabs_.empty()) button->set_group(*tabs_.front().button);
  button->set_focusable(false);
  button->signal_toggled().connect(
      [this, tag = tab.tag, &button = *button] { toggled(tag, button); });
  button->set_parent(*this);
  tabs_.push_back({tab.tag, std::move(button)});
}

Gtk::SizeRequestMode TabBar::get_request_mode_vfunc() const {
  return Gtk::SizeRequestMode::CONSTANT_SIZE;
}

void TabBar::measure_vfunc(Gtk::Orientation orientation, int, int& minimum, int& natural,
                           int& minimumBaseline, int& naturalBaseline) const {
  minimumBaseline = naturalBaseline = -1;
  minimum = natural = 0;
  const bool isWidth = orientation == Gtk::Orientation::HORIZONTAL;
  for (const auto& tab : tabs_) {
    const Wish wish = wishOf(*tab.button, orientation);
    minimum = isWidth ? minimum + wish.least : std::max(minimum, wish.least);
    natural = std::max(natural, wish.natural);
  }
  if (isWidth) natural *= static_cast<int>(tabs_.size());
}

// From the side where reading begins.
void TabBar::size_allocate_vfunc(int width, int height, int) {
  if (tabs_.empty()) return;
  std::vector<int> widths;
  for (const auto& tab : tabs_) {
    widths.push_back(wishOf(*tab.button, Gtk::Orientation::HORIZONTAL).natural);
  }
  widths = shares(std::move(widths), width);
  const bool isReversed = get_direction() == Gtk::TextDirection::RTL;
  int start = 0;
  for (std::size_t at = 0; at < tabs_.size(); ++at) {
    const int left = isReversed ? width - start - widths[at] : start;
    tabs_[at].button->size_allocate({left, 0, widths[at], height}, -1);
    start += widths[at];
  }
}

void TabBar::toggled(const std::string& tag, Gtk::ToggleButton& button) {
  // One stop on the way of the Tab key; from tab to tab by arrow keys.
  button.set_focusable(button.get_active());
  if (!button.get_active()) return;
  chosen_ = tag;
  if (!isShowing_) tell_(tag);
}

void TabBar::choose(const std::string& tag) {
  isShowing_ = true;
  for (auto& tab : tabs_) {
    if (tab.tag == tag) tab.button->set_active();
  }
  isShowing_ = false;
}

void TabBar::step(int by) {
  const auto at = std::find_if(tabs_.begin(), tabs_.end(),
                               [this](const Tab& tab) { return tab.tag == chosen_; });
  const auto count = static_cast<std::ptrdiff_t>(tabs_.size());
  if (at == tabs_.end()) return;
  auto& next = tabs_[static_cast<std::size_t>(((at - tabs_.begin()) + by + count) % count)];
  const bool hadFocus = at->button->has_focus();
  next.button->set_active();
  if (hadFocus) next.button->grab_focus();
}

// Along the bar by arrow keys, as reading goes.
bool TabBar::key(guint value) {
  const bool isReversed = get_direction() == Gtk::TextDirection::RTL;
  if (value == GDK_KEY_Right || value == GDK_KEY_KP_Right) return step(isReversed ? -1 : 1), true;
  if (value == GDK_KEY_Left || value == GDK_KEY_KP_Left) return step(isReversed ? 1 : -1), true;
  return false;
}

}  // namespace orvane::window
