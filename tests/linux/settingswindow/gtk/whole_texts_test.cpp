// That texts of the window's own are never cut, whatever size the desktop gives them.

#include <gtest/gtest.h>
#include <gtkmm/dropdown.h>
#include <gtkmm/label.h>
#include <gtkmm/settings.h>
#include <gtkmm/togglebutton.h>

#include <algorithm>
#include <string>
#include <vector>

#include "linux/settingswindow/example_form.h"
#include "linux/settingswindow/gtk/form_edits.h"
#include "shown_window.h"

namespace orvane::window {
namespace {

constexpr int kUsualTexts = 96 * 1024;
constexpr int kDoubleTexts = 2 * kUsualTexts;

Form exampleForm() {
  Form form = fakes::exampleForm();
  std::get<FormSourceList>(controlOf(form, "empty")->content).height = 310;
  return form;
}

Form formOfFourTabs() {
  Form form = exampleForm();
  form.tabs.push_back({"Smart Next", "timer", "third", {}, false});
  form.tabs.push_back({"Appearance", "timer", "fourth", {}, false});
  return form;
}

class WholeTextsTest : public testing::Test {
 protected:
  void SetUp() override { setTexts(kUsualTexts); }
  void TearDown() override { Gtk::Settings::get_default()->property_gtk_xft_dpi().reset_value(); }
  static void setTexts(int resolution) {
    Gtk::Settings::get_default()->property_gtk_xft_dpi() = resolution;
  }
  Gtk::Label* seen(const std::string& text) {
    return screen_.find<Gtk::Label>(
        [&](Gtk::Label& label) { return label.get_mapped() && label.get_text().raw() == text; });
  }
  bool isWhole(const std::string& text) {
    auto* label = seen(text);
    return label && label->get_width() > 0 && !label->get_layout()->is_ellipsized();
  }
  int heightOf(const std::string& text) {
    auto* label = seen(text);
    return label ? label->get_height() : 0;
  }
  int widthOfTab(const std::string& text) {
    auto* label = seen(text);
    return label ? label->get_ancestor(Gtk::ToggleButton::get_type())->get_width() : 0;
  }

  ShownWindow screen_;
};

TEST_F(WholeTextsTest, TabsAreEquallyWideAsLongAsTheirLabelsFit) {
  screen_.show(formOfFourTabs());
  std::vector<int> widths;
  for (const auto* tab : {"First", "Second", "Smart Next", "Appearance"}) {
    EXPECT_TRUE(isWhole(tab)) << tab;
    widths.push_back(widthOfTab(tab));
  }
  const auto [least, most] = std::minmax_element(widths.begin(), widths.end());
  EXPECT_LE(*most - *least, 1);
}

TEST_F(WholeTextsTest, LabelsOfTabsStayWholeWhereTextsGrow) {
  screen_.show(formOfFourTabs());
  const int height = heightOf("Appearance");
  setTexts(kDoubleTexts);
  ASSERT_TRUE(screen_.eventually([&] { return heightOf("Appearance") > height * 3 / 2; }));
  for (const auto* tab : {"First", "Second", "Smart Next", "Appearance"}) {
    EXPECT_TRUE(isWhole(tab)) << tab;
  }
  EXPECT_EQ(screen_.window().get_width(), 760);
  setTexts(kUsualTexts);
  EXPECT_TRUE(screen_.eventually([&] { return heightOf("Appearance") == height; }));
  EXPECT_LE(widthOfTab("First") - widthOfTab("Appearance"), 1);
}

TEST_F(WholeTextsTest, ChoicesAreWholeBesideAShortOneThatIsChosen) {
  const std::string longest(40, 'x');
  Form form = exampleForm();
  form.selectedTab = "second";
  std::get<FormPicker>(controlOf(form, "picker")->content).choices = {
      {"a", "A choice of thirty characters."}, {"b", "B"}, {"c", longest}};
  screen_.show(form);
  auto* picker = screen_.find<Gtk::DropDown>();
  ASSERT_TRUE(screen_.eventually([&] { return picker->get_mapped(); }));
  picker->activate();
  EXPECT_TRUE(screen_.eventually([&] { return isWhole("A choice of thirty characters."); }));
  // A screen's name may be as long as it likes.
  ASSERT_TRUE(seen(longest));
  EXPECT_FALSE(isWhole(longest));
}

}  // namespace
}  // namespace orvane::window
