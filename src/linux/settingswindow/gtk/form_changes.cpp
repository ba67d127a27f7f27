#include "linux/settingswindow/gtk/form_changes.h"

#include <variant>

namespace orvane::window {
namespace {

// Takes out of a control's content what can change under a widget's hands.
struct WithoutValue {
  void operator()(FormPicker& picker) const { picker = {}; }
  void operator()(FormToggle& toggle) const { toggle = {}; }
  void operator()(FormTextField& field) const { field.text.clear(); }
  void operator()(FormSlider& slider) const { slider.value = 0; }
  void operator()(FormColorPicker& picker) const { picker = {}; }
  void operator()(FormSourceList& list) const {
    list.rows.clear();
    list.emptyState.reset();
    list.all.isEnabled = true;
  }
  void operator()(FormPreview& preview) const { preview = {}; }
  void operator()(FormCaption&) const {}
};

// The form without its values.
Form frameOf(Form form) {
  form.selectedTab.clear();
  forEachControl(form, [](FormControl& control) {
    std::visit(WithoutValue{}, control.content);
    control.isEnabled = true;
  });
  return form;
}

std::vector<const FormControl*> controlsOf(const Form& form) {
  std::vector<const FormControl*> controls;
  forEachControl(form, [&](const FormControl& control) { controls.push_back(&control); });
  return controls;
}

// Both have the same frame, so that every control has its counterpart.
std::vector<FormControl> changedControls(const Form& shown, const Form& next) {
  std::vector<FormControl> changed;
  const auto before = controlsOf(shown);
  std::size_t at = 0;
  forEachControl(next, [&](const FormControl& control) {
    if (control != *before[at++]) changed.push_back(control);
  });
  return changed;
}

}  // namespace

FormChanges changesBetween(const Form& shown, const Form& next) {
  if (frameOf(shown) != frameOf(next)) return {true, std::nullopt, {}};
  FormChanges changes;
  if (shown.selectedTab != next.selectedTab) changes.selectedTab = next.selectedTab;
  changes.controls = changedControls(shown, next);
  return changes;
}

}  // namespace orvane::window
