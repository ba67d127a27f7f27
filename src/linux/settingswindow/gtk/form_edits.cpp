#include "linux/settingswindow/gtk/form_edits.h"

#include <algorithm>
#include <variant>

namespace orvane::window {
namespace {

template <class T>
void take(T& place, const FormValue& value) {
  if (const auto* given = std::get_if<T>(&value)) place = *given;
}

struct Edited {
  const FormEdit& edit;

  void operator()(FormPicker& picker) const { take(picker.value, edit.value); }
  void operator()(FormToggle& toggle) const { take(toggle.isOn, edit.value); }
  void operator()(FormTextField& field) const { take(field.text, edit.value); }
  void operator()(FormSlider& slider) const { take(slider.value, edit.value); }
  void operator()(FormColorPicker& picker) const { take(picker.color, edit.value); }
  void operator()(FormSourceList& list) const {
    for (auto& row : list.rows) {
      if (row.key == edit.key) take(row.isOn, edit.value);
    }
  }
  void operator()(FormPreview&) const {}
  void operator()(FormCaption&) const {}
};

bool hasKey(const FormControl& control, std::string_view key) {
  if (control.key == key) return true;
  const auto* list = std::get_if<FormSourceList>(&control.content);
  return list &&
         (list->all.key == key || std::any_of(list->rows.begin(), list->rows.end(),
                                              [&](const FormRow& row) { return row.key == key; }));
}

}  // namespace

FormControl* controlOf(Form& form, std::string_view key) {
  return findControl(form, [&](const FormControl& control) { return hasKey(control, key); });
}

const FormControl* controlOf(const Form& form, std::string_view key) {
  return findControl(form, [&](const FormControl& control) { return hasKey(control, key); });
}

Form edited(Form form, const FormEdit& edit) {
  if (edit.key == Form::selectedTabKey) {
    take(form.selectedTab, edit.value);
  } else if (auto* control = controlOf(form, edit.key)) {
    std::visit(Edited{edit}, control->content);
  }
  return form;
}

}  // namespace orvane::window
