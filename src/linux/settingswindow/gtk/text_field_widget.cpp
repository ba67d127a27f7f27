#include <gtkmm/entry.h>

#include <algorithm>

#include "linux/settingswindow/gtk/control_widgets.h"
#include "linux/settingswindow/gtk/enabling.h"

namespace orvane::window {
namespace {

constexpr std::size_t kMostCharacters = 65535;  // the toolkit's own limit

class TextFieldWidget final : public ControlWidget {
 public:
  TextFieldWidget(const FormControl& control, const FormHands& hands)
      : key_(control.key), hands_(hands) {
    const auto& field = std::get<FormTextField>(control.content);
    longest_ = field.longest;
    entry_.set_placeholder_text(field.placeholder);
    entry_.set_max_length(static_cast<int>(std::min(longest_, kMostCharacters)));
    entry_.set_hexpand();
    show(control);
    entry_.signal_changed().connect([this] { changed(); });
  }

  ControlPlace place() const override { return ControlPlace::wide; }
  Gtk::Widget& widget() override { return entry_; }

  // A text that is there already is left alone, with the cursor and what is selected in it.
  void show(const FormControl& control) override {
    const auto& text = std::get<FormTextField>(control.content).text;
    setEnabled(entry_, control.isEnabled);
    if (wholeText() != text) put(text);
    lastText_ = text;
  }

 private:
  [[nodiscard]] std::string wholeText() const { return entry_.get_text().raw() + rest_; }

  void put(const std::string& text) {
    isShowing_ = true;
    const int cursor = entry_.get_position();
    entry_.set_text(text);
    rest_ = text.substr(std::min<std::size_t>(entry_.get_text().bytes(), text.size()));
    entry_.set_position(cursor);
    isShowing_ = false;
  }

  // The limit is one of bytes, and the toolkit's one of characters. Where something was taken away,
  // the rest comes up.
  void changed() {
    if (isShowing_) return;
    const std::string text = wholeText();
    if (text.size() > longest_) return put(lastText_);
    lastText_ = text;
    if (!rest_.empty()) put(text);
    hands_.edit({key_, text});
  }

  const std::string key_;
  const FormHands& hands_;
  std::size_t longest_ = 0;
  std::string lastText_;
  Gtk::Entry entry_;
  std::string rest_;  // the end of a stored text that the entry is too small for
  bool isShowing_ = false;
};

}  // namespace

std::unique_ptr<ControlWidget> makeTextField(const FormControl& control, const FormHands& hands) {
  return std::make_unique<TextFieldWidget>(control, hands);
}

}  // namespace orvane::window
