#include "linux/settingswindow/gtk/shown_form.h"

#include <gtest/gtest.h>

#include <string>

#include "linux/settingswindow/example_form.h"
#include "linux/settingswindow/gtk/form_edits.h"

namespace orvane::window {
namespace {

using fakes::exampleForm;

Form with(const FormEdit& edit) { return edited(exampleForm(), edit); }

template <class Content>
const Content& contentOf(const Form& form, const std::string& key) {
  return std::get<Content>(controlOf(form, key)->content);
}

class ShownFormTest : public testing::Test {
 protected:
  [[nodiscard]] std::string text() const {
    return contentOf<FormTextField>(shown_.form(), "text").text;
  }
  [[nodiscard]] double slider() const {
    return contentOf<FormSlider>(shown_.form(), "slider").value;
  }
  [[nodiscard]] bool row(std::size_t index) const {
    return contentOf<FormSourceList>(shown_.form(), "list").rows.at(index).isOn;
  }

  ShownForm shown_{exampleForm()};
};

TEST_F(ShownFormTest, ShowsAnEditAsItsControlDoes) {
  shown_.edit({"text", std::string("a")}, 1);
  shown_.edit({"list/ü", true}, 2);
  shown_.edit({Form::selectedTabKey, std::string("second")}, 3);
  EXPECT_EQ(text(), "a");
  EXPECT_TRUE(row(1));
  EXPECT_EQ(shown_.form().selectedTab, "second");
}

TEST_F(ShownFormTest, IgnoresAnEditOfNothingOrOfAnotherType) {
  shown_.edit({"nobody", true}, 1);
  shown_.edit({"text", true}, 2);
  shown_.edit({"list.all", {}}, 3);
  EXPECT_EQ(shown_.form(), exampleForm());
}

TEST_F(ShownFormTest, KeepsWhatIsBeingTypedUntilItWasSeen) {
  shown_.edit({"text", std::string("a")}, 1);
  shown_.edit({"text", std::string("ab")}, 2);
  EXPECT_TRUE(shown_.tell(with({"text", std::string("a")}), 1).isNothing());
  EXPECT_EQ(text(), "ab");
  EXPECT_TRUE(shown_.tell(with({"text", std::string("ab")}), 2).isNothing());
  EXPECT_EQ(text(), "ab");
}

TEST_F(ShownFormTest, SpringsBackWhenTheEditWasRefused) {
  shown_.edit({"picker", std::string("a")}, 1);
  const FormChanges changes = shown_.tell(exampleForm(), 1);
  ASSERT_EQ(changes.controls.size(), 1U);
  EXPECT_EQ(changes.controls[0].key, "picker");
  EXPECT_EQ(std::get<FormPicker>(changes.controls[0].content).value, "b");
}

TEST_F(ShownFormTest, ShowsOtherControlsMeanwhile) {
  shown_.edit({"text", std::string("a")}, 1);
  const FormChanges changes = shown_.tell(with({"slider", 0.5}), 0);
  ASSERT_EQ(changes.controls.size(), 1U);
  EXPECT_EQ(changes.controls[0].key, "slider");
  EXPECT_EQ(text(), "a");
}

TEST_F(ShownFormTest, HoldsBackOneRowOfAListAlone) {
  shown_.edit({"list/ü", true}, 1);
  const FormChanges changes = shown_.tell(with({"list/a", false}), 0);
  ASSERT_EQ(changes.controls.size(), 1U);
  EXPECT_FALSE(row(0));
  EXPECT_TRUE(row(1));
}

TEST_F(ShownFormTest, DropsAnEditOfARowThatIsGone) {
  shown_.edit({"list/ü", true}, 1);
  Form next = exampleForm();
  std::get<FormSourceList>(controlOf(next, "list")->content).rows.pop_back();
  EXPECT_EQ(shown_.tell(next, 0).controls.size(), 1U);
  EXPECT_EQ(shown_.form(), next);
}

TEST_F(ShownFormTest, LeavesWhatIsUnderTheHandUntilItIsLetGo) {
  shown_.hold("slider");
  shown_.edit({"slider", 0.8}, 1);
  EXPECT_TRUE(shown_.tell(with({"slider", 0.5}), 1).isNothing());
  EXPECT_EQ(slider(), 0.8);
  const FormChanges changes = shown_.letGo("slider");
  ASSERT_EQ(changes.controls.size(), 1U);
  EXPECT_EQ(slider(), 0.5);
}

TEST_F(ShownFormTest, LetsGoOfWhatWasNeverToldOtherwise) {
  shown_.hold("slider");
  shown_.edit({"slider", 0.8}, 1);
  EXPECT_TRUE(shown_.letGo("slider").isNothing());
  EXPECT_TRUE(shown_.tell(with({"slider", 0.8}), 1).isNothing());
}

TEST_F(ShownFormTest, IsAnotherFormEvenUnderTheHand) {
  shown_.hold("slider");
  Form next = exampleForm();
  next.tabs[1].sections[1].controls[0].content = FormToggle{true};
  EXPECT_TRUE(shown_.tell(next, 0).isAnotherForm);
  EXPECT_EQ(shown_.form(), next);
}

}  // namespace
}  // namespace orvane::window
