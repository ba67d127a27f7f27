#pragma once

#include <gtkmm/togglebutton.h>
#include <gtkmm/widget.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "linux/settingswindow/gtk/mnemonics.h"
#include "platform/form.h"

namespace orvane::window {

// The tabs' labels with their symbols, of which one is chosen. They are equally wide, unless that
// cut a label for which the others leave room, as where the desktop's texts are large.
class TabBar final : public Gtk::Widget {
 public:
  using Chosen = std::function<void(const std::string& tag)>;

  // `name` is what screen readers call the bar.
  TabBar(const std::vector<FormTab>& tabs, const std::string& name, Mnemonics& mnemonics,
         Chosen chosen);
  ~TabBar() override;
  TabBar(const TabBar&) = delete;
  TabBar& operator=(const TabBar&) = delete;

  // Tells nobody. An unknown tag leaves all as it is.
  void choose(const std::string& tag);
  // As the user would with the keyboard: the tab so many further on, around the ends.
  void step(int by);
  [[nodiscard]] const std::string& chosen() const { return chosen_; }

 protected:
  Gtk::SizeRequestMode get_request_mode_vfunc() const override;
  void measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural,
                     int& minimumBaseline, int& naturalBaseline) const override;
  void size_allocate_vfunc(int width, int height, int baseline) override;

 private:
  struct Tab {
    std::string tag;
    std::unique_ptr<Gtk::ToggleButton> button;
  };

  void add(const FormTab& tab, Mnemonics& mnemonics);
  void toggled(const std::string& tag, Gtk::ToggleButton& button);
  bool key(guint value);

  const Chosen tell_;
  std::vector<Tab> tabs_;
  std::string chosen_;
  bool isShowing_ = false;
};

}  // namespace orvane::window
