#pragma once

#include <cstdint>
#include <deque>
#include <set>
#include <string>

#include "linux/settingswindow/gtk/form_changes.h"
#include "platform/form.h"

namespace orvane::window {

// Which form a window is to show, between what its owner tells and what the user does meanwhile.
//
// A form that was told is shown but for the controls that the user is ahead of: those with edits
// which the owner had not seen when it told the form, and those under the user's hand. So a slider
// does not jump back behind the pointer, nor a text behind the keyboard; and once the owner has
// answered, what it says is shown, be it that the edit was refused.
class ShownForm {
 public:
  explicit ShownForm(Form form) : told_(form), shown_(std::move(form)) {}

  [[nodiscard]] const Form& form() const { return shown_; }
  // The one that was told last, without what the user is ahead.
  [[nodiscard]] const Form& told() const { return told_; }

  // An edit that its control shows already. Numbers grow.
  void edit(FormEdit edit, std::uint64_t number);
  // The owner tells a form, having seen all edits up to that number.
  [[nodiscard]] FormChanges tell(Form form, std::uint64_t seenEdits);
  // The control stays as the user has it until it is let go.
  void hold(const std::string& key) { held_.insert(key); }
  [[nodiscard]] FormChanges letGo(const std::string& key);

 private:
  struct Unseen {
    std::uint64_t number;
    FormEdit edit;
  };

  [[nodiscard]] Form due() const;
  FormChanges show(Form form);

  Form told_;
  Form shown_;
  std::deque<Unseen> unseen_;
  std::set<std::string, std::less<>> held_;
};

}  // namespace orvane::window
