#include "linux/settingswindow/gtk/form_changes.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "linux/settingswindow/example_form.h"
#include "linux/settingswindow/gtk/form_edits.h"

namespace orvane::window {
namespace {

using fakes::exampleForm;
using Change = std::function<void(Form&)>;

FormControl& control(Form& form, const std::string& key) { return *controlOf(form, key); }

template <class Content>
Content& contentOf(Form& form, const std::string& key) {
  return std::get<Content>(control(form, key).content);
}

FormChanges changesBy(const Change& change) {
  Form next = exampleForm();
  change(next);
  return changesBetween(exampleForm(), next);
}

TEST(FormChanges, OfTheSameFormAreNone) {
  EXPECT_TRUE(changesBy([](Form&) {}).isNothing());
}

TEST(FormChanges, OfAValueNameThatControlAlone) {
  const struct {
    const char* key;
    Change change;
  } cases[] = {
      {"picker", [](Form& form) { contentOf<FormPicker>(form, "picker").value = "a"; }},
      {"picker",
       [](Form& form) {
         contentOf<FormPicker>(form, "picker").choices.push_back({"c", "C"});
       }},
      {"toggle", [](Form& form) { contentOf<FormToggle>(form, "toggle").isOn = false; }},
      {"toggle", [](Form& form) { control(form, "toggle").isEnabled = true; }},
      {"text", [](Form& form) { contentOf<FormTextField>(form, "text").text = "b"; }},
      {"slider", [](Form& form) { contentOf<FormSlider>(form, "slider").value = 0.5; }},
      {"color", [](Form& form) { contentOf<FormColorPicker>(form, "color").color = Color::red(); }},
      {"list", [](Form& form) { contentOf<FormSourceList>(form, "list").rows.pop_back(); }},
      {"list", [](Form& form) { contentOf<FormSourceList>(form, "list").rows[0].isOn ^= true; }},
      {"list", [](Form& form) { contentOf<FormSourceList>(form, "list").all.isEnabled = true; }},
      {"empty", [](Form& form) { contentOf<FormSourceList>(form, "empty").emptyState.reset(); }}};
  for (const auto& [key, change] : cases) {
    const FormChanges changes = changesBy(change);
    EXPECT_FALSE(changes.isAnotherForm) << key;
    EXPECT_FALSE(changes.selectedTab) << key;
    ASSERT_EQ(changes.controls.size(), 1U) << key;
    EXPECT_EQ(changes.controls[0].key, key);
  }
}

TEST(FormChanges, OfTheTabNameNoControl) {
  const FormChanges changes = changesBy([](Form& form) { form.selectedTab = "second"; });
  EXPECT_EQ(changes.selectedTab, "second");
  EXPECT_TRUE(changes.controls.empty());
}

TEST(FormChanges, OfTheFrameMakeAnotherForm) {
  const std::vector<Change> cases = {
      [](Form& form) { form.header.title.text = "Other"; },
      [](Form& form) { form.size.width += 1; },
      [](Form& form) { form.tabs.pop_back(); },
      [](Form& form) { form.tabs[0].label = "Other"; },
      [](Form& form) { form.tabs[1].sections[0].title = "Other"; },
      [](Form& form) { form.tabs[1].sections[0].controls.pop_back(); },
      [](Form& form) { control(form, "toggle").label = "Other"; },
      [](Form& form) { control(form, "toggle").key = "other"; },
      [](Form& form) { control(form, "toggle").content = FormSlider{}; },
      [](Form& form) { contentOf<FormSourceList>(form, "list").rowSpacing = 9; },
      [](Form& form) { contentOf<FormSlider>(form, "slider").highest = 2; },
      [](Form& form) { contentOf<FormTextField>(form, "text").placeholder = "d"; },
      [](Form& form) { form.footer.done.label = "Other"; }};
  for (std::size_t i = 0; i < cases.size(); ++i) {
    EXPECT_TRUE(changesBy(cases[i]).isAnotherForm) << i;
  }
}

}  // namespace
}  // namespace orvane::window
