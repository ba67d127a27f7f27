#pragma once

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/stack.h>

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "linux/settingswindow/gtk/form_changes.h"
#include "linux/settingswindow/gtk/form_page.h"
#include "linux/settingswindow/gtk/tab_bar.h"
#include "platform/form.h"

namespace orvane::window {

// A form below its header: the tabs and the footer.
class FormPane final : public Gtk::Box {
 public:
  // `hands` outlive the pane.
  FormPane(const Form& form, const FormHands& hands, const std::function<void()>& done);

  // What tells another form than the one that this was made for needs another pane.
  void show(const FormChanges& changes);
  void showPicture(const std::string& key, const Glib::RefPtr<Gdk::Texture>& picture);
  void stepTab(int by) { tabs_.step(by); }
  [[nodiscard]] Gtk::Button& doneButton() { return done_; }
  // How far each scrolling part is scrolled, by names that stay the same for the same form.
  using ScrollPositions = std::map<std::string, Glib::RefPtr<Gtk::Adjustment>>;
  [[nodiscard]] ScrollPositions scrollPositions() const;

 private:
  void addTabs(const Form& form);
  void addFooter(const FormFooter& footer, const std::string& markedDone);
  [[nodiscard]] ControlWidget* control(const std::string& key) const;
  void chooseTab(const std::string& tag);

  const FormHands& hands_;
  Mnemonics mnemonics_;
  TabBar tabs_;
  Gtk::Stack pages_;
  std::map<std::string, std::unique_ptr<FormPage>, std::less<>> pageOf_;
  Gtk::Button done_;
  Gtk::Box footer_{Gtk::Orientation::HORIZONTAL, 12};
};

}  // namespace orvane::window
