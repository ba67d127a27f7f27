#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "platform/form.h"

namespace orvane::fakes {

// A form as text, one line a control, for looking at a case and comparing it.
class FormText {
 public:
  static std::string of(const Form& form) {
    std::string text = "header \"" + form.header.title.text + "\"\n";
    for (const auto& tab : form.tabs) {
      text += (tab.tag == form.selectedTab ? "tab* " : "tab ") + tab.tag + "\n" + of(tab);
    }
    return text + "footer \"" + form.footer.note.text + "\"\n" + line("  ", form.footer.done);
  }
  static std::string of(const FormTab& tab) {
    std::string text;
    for (const auto& section : tab.sections) {
      if (!section.title.empty()) text += "  section \"" + section.title + "\"\n";
      for (const auto& control : section.controls) text += of(control);
    }
    return text;
  }
  static std::string of(const FormControl& control) {
    return "  " + control.key + " \"" + control.label + "\"" +
           std::visit(Content{}, control.content) + (control.isEnabled ? "\n" : " (disabled)\n") +
           rowsOf(control);
  }
  static std::string of(const Color& color) {
    const SRGB srgb = color.resolved();
    return number(srgb.red) + " " + number(srgb.green) + " " + number(srgb.blue);
  }

 private:
  struct Content {
    std::string operator()(const FormPicker& picker) const {
      std::string text = " picker";
      for (const auto& [id, title] : picker.choices) {
        text += (id == picker.value ? " [*" : " [") + id + ": " + title + "]";
      }
      return text;
    }
    std::string operator()(const FormToggle& toggle) const { return toggle.isOn ? " on" : " off"; }
    std::string operator()(const FormTextField& field) const {
      return " text \"" + field.text + "\", else \"" + field.placeholder + "\"";
    }
    std::string operator()(const FormSlider& slider) const {
      return " slider " + number(slider.value) + " in " + number(slider.lowest) + "..." +
             number(slider.highest);
    }
    std::string operator()(const FormColorPicker& picker) const {
      return " color " + of(picker.color);
    }
    std::string operator()(const FormSourceList& list) const {
      return " list of " + std::to_string(list.rows.size());
    }
    std::string operator()(const FormPreview& preview) const {
      return " preview " + number(preview.size.width) + " x " + number(preview.size.height);
    }
    std::string operator()(const FormCaption&) const { return " caption"; }
  };

  static std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", value);
    return text;
  }
  static std::string line(const std::string& indent, const FormButton& button) {
    return indent + button.key + " \"" + button.label + "\" button" +
           (button.isDefaultAction ? ", default" : "") + (button.closesWindow ? ", closes" : "") +
           (button.isEnabled ? "\n" : " (disabled)\n");
  }
  static std::string rowsOf(const FormControl& control) {
    const auto* list = std::get_if<FormSourceList>(&control.content);
    if (!list) return {};
    std::string text = line("    ", list->all);
    for (const auto& row : list->rows) {
      text += "    " + row.key + " \"" + row.label + "\"" + (row.isOn ? " on\n" : " off\n");
    }
    if (list->emptyState) {
      text += "    empty: " + list->emptyState->symbol + " \"" + list->emptyState->text + "\"\n";
    }
    return text;
  }
};

}  // namespace orvane::fakes
