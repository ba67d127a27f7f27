#pragma once

#include "platform/form.h"

namespace orvane::fakes {

// A form with one of everything.
inline Form exampleForm() {
  Form form;
  form.size = {760, 620};
  form.padding = 20;
  form.spacing = 16;
  form.controlSpacing = 12.5;
  form.tabPadding = 8;
  form.header = {"calendar.badge.clock",
                 {"Title", FormTextStyle::title, true, false},
                 {"Subtitle", FormTextStyle::callout, false, true}};
  form.selectedTab = "first";
  FormSourceList list;
  list.all = {"list.all", "All", false, false, false};
  list.rows = {{"list/a", "", true}, {"list/ü", "\u05d0\u05d1 \U0001F600 \"quoted\"\n", false}};
  list.height = 310;
  list.minHeight = 260;
  list.rowSpacing = 8;
  list.padding = 12;
  FormSourceList empty;
  empty.emptyState = FormEmptyState{"questionmark.folder", "Nothing here."};
  form.tabs = {{"First",
                "calendar",
                "first",
                {{"", {{"list", "List", true, list}, {"empty", "Empty", false, empty}}}},
                true},
               {"Second",
                "timer",
                "second",
                {{"",
                  {{"picker", "Picker", true, FormPicker{"b", {{"a", "A"}, {"b", "B"}}}},
                   {"toggle", "Toggle", false, FormToggle{true}},
                   {"text", "Text", true, FormTextField{"a, b", "c", 100}}}},
                 {"Titled",
                  {{"slider", "Slider", true, FormSlider{0.7, 0.45, 0.95}},
                   {"color", "Color", true, FormColorPicker{Color::srgb(0.1, 0.25, 1, 0.5)}},
                   {"preview", "Preview", true, FormPreview{View(), {420, 240}}},
                   {"caption", "Caption", true, FormCaption{}}}}},
                false}};
  form.footer = {{"Note", FormTextStyle::callout, false, true}, {"done", "Done", true, true, true}};
  return form;
}

}  // namespace orvane::fakes
