#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

#include "foundation/color.h"
#include "view/geometry.h"
#include "view/view.h"

namespace orvane {

// A form as a plain value: what a form window shows, whichever toolkit draws it. Texts are UTF-8 as
// they are to be shown; names that users gave may be empty, long or in any script. Sizes are
// points. Keys are stable and tell the controls of one form apart.

// What stands in a control: nothing for a button, a toggle's state, a slider's position, the
// identifier of a choice or the content of a text field, a colour.
using FormValue = std::variant<std::monostate, bool, double, std::string, Color>;

// What the user did: pressed, switched, moved, chose or wrote.
struct FormEdit {
  std::string key;
  FormValue value;
  friend bool operator==(const FormEdit&, const FormEdit&) = default;
};

enum class FormTextStyle : std::uint8_t { title, headline, body, callout, caption };

struct FormText {
  std::string text;
  FormTextStyle style = FormTextStyle::body;
  bool isSemibold = false;
  bool isSecondary = false;
  friend bool operator==(const FormText&, const FormText&) = default;
};

struct FormButton {
  std::string key;
  std::string label;
  bool isEnabled = true;
  bool isDefaultAction = false;  // Return presses it
  bool closesWindow = false;     // pressing it is the window's affair, and comes back as no edit
  friend bool operator==(const FormButton&, const FormButton&) = default;
};

struct FormChoice {
  std::string id;
  std::string title;
  friend bool operator==(const FormChoice&, const FormChoice&) = default;
};

// One of several. A value that is no choice's identifier shows none of them as chosen.
struct FormPicker {
  std::string value;
  std::vector<FormChoice> choices;
  friend bool operator==(const FormPicker&, const FormPicker&) = default;
};

struct FormToggle {
  bool isOn = false;
  friend bool operator==(const FormToggle&, const FormToggle&) = default;
};

// One line of text, of at most so many bytes.
struct FormTextField {
  std::string text;
  std::string placeholder;
  std::size_t longest = 0;
  friend bool operator==(const FormTextField&, const FormTextField&) = default;
};

// Continuous, both ends included; the value lies between them.
struct FormSlider {
  double value = 0;
  double lowest = 0;
  double highest = 1;
  friend bool operator==(const FormSlider&, const FormSlider&) = default;
};

// A colour in sRGB, whose opacity the user is not asked for.
struct FormColorPicker {
  Color color;
  friend bool operator==(const FormColorPicker&, const FormColorPicker&) = default;
};

// A toggle in a list, by a key of its own.
struct FormRow {
  std::string key;
  std::string label;
  bool isOn = false;
  friend bool operator==(const FormRow&, const FormRow&) = default;
};

// What stands in place of a list without rows.
struct FormEmptyState {
  std::string symbol;  // one of view/symbols.h
  std::string text;
  friend bool operator==(const FormEmptyState&, const FormEmptyState&) = default;
};

// A title with a button at the other end of its line, over an area of rows that scrolls vertically
// and is as wide as it may be. Rows are leading-aligned.
struct FormSourceList {
  FormButton all;
  std::vector<FormRow> rows;
  std::optional<FormEmptyState> emptyState;  // there exactly when there are no rows
  double height = 0;
  double minHeight = 0;
  double rowSpacing = 0;
  double padding = 0;  // around the rows, on all edges
  friend bool operator==(const FormSourceList&, const FormSourceList&) = default;
};

// A picture that the program itself draws, laid out in exactly this size.
struct FormPreview {
  View view;
  Size size;
  friend bool operator==(const FormPreview&, const FormPreview&) = default;
};

// A text that goes with the control before it; the label is the text.
struct FormCaption {
  friend bool operator==(const FormCaption&, const FormCaption&) = default;
};

struct FormControl {
  std::string key;
  std::string label;
  bool isEnabled = true;
  std::variant<FormPicker, FormToggle, FormTextField, FormSlider, FormColorPicker, FormSourceList,
               FormPreview, FormCaption>
      content;
  friend bool operator==(const FormControl&, const FormControl&) = default;
};

// Controls that belong together, under a title unless that is empty.
struct FormSection {
  std::string title;
  std::vector<FormControl> controls;
  friend bool operator==(const FormSection&, const FormSection&) = default;
};

struct FormTab {
  std::string label;
  std::string symbol;  // one of view/symbols.h
  std::string tag;
  std::vector<FormSection> sections;
  bool isSideBySide = false;  // the controls of a section stand in a row, equally wide
  friend bool operator==(const FormTab&, const FormTab&) = default;
};

struct FormHeader {
  std::string symbol;
  FormText title;
  FormText subtitle;  // under the title
  friend bool operator==(const FormHeader&, const FormHeader&) = default;
};

struct FormFooter {
  FormText note;
  FormButton done;
  friend bool operator==(const FormFooter&, const FormFooter&) = default;
};

// From top to bottom: the header, one of the tabs, the footer. An edit of `selectedTabKey` with a
// tab's tag shows that tab.
struct Form {
  static constexpr const char* selectedTabKey = "selectedTab";

  Size size;
  double padding = 0;         // from the window's edges to its content
  double spacing = 0;         // between header, tabs and footer
  double controlSpacing = 0;  // between the controls of a tab
  double tabPadding = 0;      // from a tab's edges to its controls
  FormHeader header;
  std::string selectedTab;  // a tag
  std::vector<FormTab> tabs;
  FormFooter footer;
  friend bool operator==(const Form&, const Form&) = default;
};

// Visits the controls of a form, or of one of its tabs, from top to bottom.
template <class FormOrTab, class Visit>
void forEachControl(FormOrTab& part, const Visit& visit) {
  if constexpr (requires { part.tabs; }) {
    for (auto& tab : part.tabs) forEachControl(tab, visit);
  } else {
    for (auto& section : part.sections) {
      for (auto& control : section.controls) visit(control);
    }
  }
}

// The first of those controls that is the one looked for; null where none is. It belongs to the
// form or tab.
template <class FormOrTab, class Is>
[[nodiscard]] auto* findControl(FormOrTab& part, const Is& is) {
  std::conditional_t<std::is_const_v<FormOrTab>, const FormControl, FormControl>* found = nullptr;
  forEachControl(part, [&](auto& control) {
    if (!found && is(control)) found = &control;
  });
  return found;
}

}  // namespace orvane
