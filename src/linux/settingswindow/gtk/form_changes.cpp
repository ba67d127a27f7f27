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
  for (auto& tab : form.tabs) {
    for (auto& section : tab.sections) {
      for (auto& control : section.controls) {
        std::visit(WithoutValue{}, control.content);
        control.isEnabled = true;
      }
    }
  }
  return form;
}

// Both have the same frame, so that every control has its counterpart.
std::vector<FormControl> changedControls(const Form& shown, const Form& next) {
  std::vector<FormControl> changed;
  for (std::size_t t = 0; t < next.tabs.size(); ++t) {
    const auto& sections = next.tabs[t].sections;
    for (std::size_t s = 0; s < sections.size(); ++s) {
      const auto& before = shown.tabs[t].sections[s].controls;
      const auto& after = sections[s].controls;
      for (std::size_t c = 0; c < after.size(); ++c) {
        if (after[c] != before[c]) changed.push_back(after[c]);
      }
    }
  }
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
