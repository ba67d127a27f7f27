// What the window does with its form, with the toolkit's own widgets.

#include "linux/settingswindow/gtk/settings_window.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <gtkmm/button.h>
#include <gtkmm/checkbutton.h>
#include <gtkmm/entry.h>
#include <gtkmm/label.h>
#include <gtkmm/listview.h>
#include <gtkmm/scale.h>
#include <gtkmm/switch.h>

#include "linux/settingswindow/example_form.h"
#include "linux/settingswindow/gtk/form_edits.h"
#include "shown_window.h"

namespace orvane::window {
namespace {

constexpr const char* kList = "first/list";

template <class Content>
Content& contentOf(Form& form, const std::string& key) {
  return std::get<Content>(controlOf(form, key)->content);
}

Form formOf(std::size_t rows) {
  Form form = fakes::exampleForm();
  contentOf<FormSourceList>(form, "empty").height = 310;
  auto& list = contentOf<FormSourceList>(form, "list");
  list.rows.clear();
  while (list.rows.size() < rows) {
    const std::string number = std::to_string(list.rows.size());
    list.rows.push_back({"row " + number, "Row " + number, false});
  }
  return form;
}

Form onSecondTab(Form form) {
  form.selectedTab = "second";
  return form;
}

class SettingsWindowTest : public testing::Test {
 protected:
  [[nodiscard]] double offset() { return scroll()->get_value(); }
  [[nodiscard]] double farthest() { return scroll()->get_upper() - scroll()->get_page_size(); }
  Glib::RefPtr<Gtk::Adjustment> scroll() {
    auto* list = screen_.find<Gtk::ListView>();
    return list->get_vadjustment();
  }
  // Whether the focus is in a widget.
  bool isIn(Gtk::Widget& widget) {
    auto* focus = screen_.window().get_focus();
    return focus && (focus == &widget || focus->is_ancestor(widget));
  }
  // The form's own; a palette of colours has one, too.
  Gtk::Entry* entry() {
    return screen_.find<Gtk::Entry>([](Gtk::Entry& entry) {
      return GTK_IS_ENTRY(entry.gobj()) && entry.get_placeholder_text() == "c";
    });
  }
  Gtk::Button* all() {
    return screen_.find<Gtk::Button>([](Gtk::Button& button) {
      const auto* label = dynamic_cast<Gtk::Label*>(button.get_child());
      return label && label->get_text() == "All";
    });
  }
  // The row that shows this name; null where none does.
  Gtk::CheckButton* toggle(const char* name) {
    return screen_.find<Gtk::CheckButton>([&](Gtk::CheckButton& row) {
      const auto* label = dynamic_cast<Gtk::Label*>(row.get_child());
      return label && label->get_text() == name;
    });
  }
  static bool isCut(Gtk::CheckButton& row) {
    auto* label = dynamic_cast<Gtk::Label*>(row.get_child());
    return label && label->get_layout()->is_ellipsized();
  }
  // Whether a tooltip says so.
  bool isTold(const std::string& text) {
    return screen_.find<Gtk::Label>([&](Gtk::Label& label) {
      const auto* around = label.get_ancestor(g_type_from_name("GtkTooltipWindow"));
      return around && label.get_mapped() && label.get_text().raw() == text;
    });
  }
  // Whether a screen reader is told this name.
  static bool isReadAs(Gtk::Widget& widget, const char* name) {
    const auto difference = Glib::make_unique_ptr_gfree(gtk_test_accessible_check_property(
        GTK_ACCESSIBLE(widget.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL, name));
    return !difference;
  }
  Gtk::Label* label(const std::string& text) {
    return screen_.find<Gtk::Label>([&](Gtk::Label& one) { return one.get_text().raw() == text; });
  }
  // Which the first label with a text needs; 0 where there is none.
  int heightOf(const char* text) {
    auto* found = label(text);
    int least = 0;
    int natural = 0;
    int baseline = 0;
    if (found) found->measure(Gtk::Orientation::VERTICAL, -1, least, natural, baseline, baseline);
    return natural;
  }

  ShownWindow screen_;
};

// ---- Scrolling

TEST_F(SettingsWindowTest, IsScrolledAsItWasOnceTheListIsLongEnough) {
  screen_.show(formOf(20), {std::nullopt, {{kList, 900}}});
  ASSERT_TRUE(screen_.eventually([&] { return farthest() > 0; }));
  EXPECT_EQ(offset(), 0);
  EXPECT_EQ(screen_.window().scrollOffsets(), (WantedOffsets::Offsets{{kList, 900}}));
  screen_.tell(formOf(200));
  EXPECT_TRUE(screen_.eventually([&] { return offset() == 900; })) << offset();
}

TEST_F(SettingsWindowTest, IsNotScrolledAwayFromWhereTheUserScrolledMeanwhile) {
  screen_.show(formOf(20), {std::nullopt, {{kList, 900}}});
  ASSERT_TRUE(screen_.eventually([&] { return farthest() >= 50; }));
  scroll()->set_value(50);
  EXPECT_EQ(screen_.window().scrollOffsets(), (WantedOffsets::Offsets{{kList, 50}}));
  screen_.tell(formOf(200));
  ASSERT_TRUE(screen_.eventually([&] { return farthest() > 900; }));
  EXPECT_TRUE(screen_.eventually([&] {
    const auto* state = screen_.state();
    return state && state->scrollOffsets.contains(kList);
  }));
  EXPECT_EQ(offset(), 50);
  EXPECT_EQ(screen_.state()->scrollOffsets, (WantedOffsets::Offsets{{kList, 50}}));
}

// ---- What is under the user's hand

TEST_F(SettingsWindowTest, EndsWithASliderUnderTheHandThatIsToldElsewhere) {
  const Form form = onSecondTab(formOf(3));
  screen_.show(form);
  auto* slider = screen_.find<Gtk::Scale>();
  ASSERT_TRUE(screen_.eventually([&] { return slider->get_mapped(); }));
  screen_.press(*slider, 0.1);
  ASSERT_TRUE(screen_.eventually([&] { return !screen_.edits().empty(); }));
  const double held = slider->get_value();
  ASSERT_LT(held, 0.6);
  // Every edit is seen, and the owner says something else, which waits for the hand.
  screen_.tell(form);
  EXPECT_EQ(slider->get_value(), held);
  const auto edits = screen_.edits();
  screen_.end();
  EXPECT_EQ(screen_.edits(), edits);
}

// ---- The focus of what is disabled

TEST_F(SettingsWindowTest, FocusOfAButtonThatIsDisabledGoesToItsList) {
  Form form = formOf(5);
  contentOf<FormSourceList>(form, "list").all.isEnabled = true;
  screen_.show(form);
  ASSERT_TRUE(all());
  all()->grab_focus();
  ASSERT_TRUE(isIn(*all()));
  screen_.tell(formOf(5));
  EXPECT_FALSE(all()->get_sensitive());
  EXPECT_TRUE(isIn(*screen_.find<Gtk::ListView>()));
}

TEST_F(SettingsWindowTest, FocusOfAToggleThatIsDisabledGoesToTheNextControl) {
  Form form = onSecondTab(formOf(5));
  controlOf(form, "toggle")->isEnabled = true;
  screen_.show(form);
  auto* toggle = screen_.find<Gtk::Switch>();
  ASSERT_TRUE(screen_.eventually([&] { return toggle->get_mapped(); }));
  toggle->grab_focus();
  ASSERT_TRUE(isIn(*toggle));
  screen_.tell(onSecondTab(formOf(5)));
  EXPECT_FALSE(toggle->get_sensitive());
  EXPECT_TRUE(isIn(*entry()));
}

TEST_F(SettingsWindowTest, FocusStaysWhereSomethingElseIsDisabled) {
  Form form = onSecondTab(formOf(5));
  controlOf(form, "toggle")->isEnabled = true;
  screen_.show(form);
  auto* field = entry();
  ASSERT_TRUE(field);
  ASSERT_TRUE(screen_.eventually([&] { return field->get_mapped(); }));
  field->grab_focus();
  field->select_region(0, -1);
  screen_.tell(onSecondTab(formOf(5)));
  EXPECT_TRUE(isIn(*field));
  int start = 0;
  int end = 0;
  EXPECT_TRUE(field->get_selection_bounds(start, end));
}

TEST_F(SettingsWindowTest, LabelsAreDisabledWithTheirControls) {
  Form form = onSecondTab(formOf(5));
  screen_.show(form);
  EXPECT_TRUE(label("Picker")->get_sensitive());
  EXPECT_FALSE(label("Toggle")->get_sensitive());
  controlOf(form, "picker")->isEnabled = false;
  controlOf(form, "toggle")->isEnabled = true;
  screen_.tell(form);
  EXPECT_FALSE(label("Picker")->get_sensitive());
  EXPECT_TRUE(label("Toggle")->get_sensitive());
}

// ---- Texts that are too long or broken

TEST_F(SettingsWindowTest, TextThatIsLongerThanAnEntryLosesNothing) {
  const std::string all = std::string(70'000, 'a') + "\u05d0";
  Form form = onSecondTab(formOf(5));
  auto& words = contentOf<FormTextField>(form, "text");
  words.longest = 100'000;
  words.text = all;
  screen_.show(form);
  auto* field = entry();
  ASSERT_TRUE(field);
  EXPECT_LT(field->get_text().size(), all.size());
  field->delete_text(0, 2);
  ASSERT_EQ(screen_.edits().size(), 1U);
  // Comparisons of long texts are told by their outcome alone.
  EXPECT_TRUE(screen_.edits()[0].value == FormValue(all.substr(2)));
  // What was taken away makes room for what did not fit.
  field->delete_text(0, 10'000);
  ASSERT_EQ(screen_.edits().size(), 2U);
  EXPECT_TRUE(screen_.edits()[1].value == FormValue(all.substr(10'002)));
  EXPECT_EQ(field->get_text().bytes(), all.size() - 10'002);
  EXPECT_TRUE(field->get_text().raw() == all.substr(10'002));
}

TEST_F(SettingsWindowTest, NameWithALineBreakIsOneLine) {
  Form form = formOf(1);
  contentOf<FormSourceList>(form, "list").rows.push_back({"broken", "Row\n2", false});
  screen_.show(form);
  ASSERT_TRUE(screen_.eventually([&] { return heightOf("Row\n2") > 0; }));
  EXPECT_EQ(heightOf("Row\n2"), heightOf("Row 0"));
}

TEST_F(SettingsWindowTest, NameThatIsTooLongIsCutAndToldInFullUnderThePointer) {
  const std::string longest =
      "Product launches, reviews and everything else that the company has to know";
  Form form = formOf(1);
  contentOf<FormSourceList>(form, "list").rows.push_back({"long", longest, false});
  screen_.show(form);
  ASSERT_TRUE(screen_.eventually([&] { return toggle(longest.c_str()) != nullptr; }));
  auto& row = *toggle(longest.c_str());
  ASSERT_TRUE(screen_.eventually([&] { return row.get_width() > 0; }));
  EXPECT_TRUE(isCut(row));
  EXPECT_FALSE(isCut(*toggle("Row 0")));
  EXPECT_EQ(screen_.window().get_width(), static_cast<int>(form.size.width));
  EXPECT_LT(row.get_width(), screen_.find<Gtk::ListView>()->get_width());
  screen_.point(row, 0.5);
  EXPECT_TRUE(screen_.eventually([&] { return isTold(longest); }));
  // It goes where the pointer goes on to a name that can be read.
  screen_.point(*toggle("Row 0"), 0.5);
  EXPECT_TRUE(screen_.eventually([&] { return !isTold(longest); }));
}

TEST_F(SettingsWindowTest, RowWithoutANameIsReadAsItsList) {
  Form form = formOf(1);
  contentOf<FormSourceList>(form, "list").rows.push_back({"nameless", "", false});
  screen_.show(form);
  ASSERT_TRUE(screen_.eventually([&] { return toggle("") != nullptr; }));
  EXPECT_TRUE(isReadAs(*toggle(""), "List"));
  EXPECT_FALSE(isReadAs(*toggle(""), "Row 0"));
  EXPECT_TRUE(isReadAs(*toggle("Row 0"), "Row 0"));
  toggle("")->activate();
  ASSERT_EQ(screen_.edits().size(), 1U);
  EXPECT_EQ(screen_.edits()[0], (FormEdit{"nameless", true}));
  // It is given a name, and loses it again.
  contentOf<FormSourceList>(form, "list").rows[1].label = "Named";
  screen_.tell(form);
  EXPECT_TRUE(isReadAs(*toggle("Named"), "Named"));
  contentOf<FormSourceList>(form, "list").rows[1].label = "";
  screen_.tell(form);
  EXPECT_TRUE(isReadAs(*toggle(""), "List"));
}

TEST_F(SettingsWindowTest, ChoiceWithALineBreakIsOneLine) {
  Form form = formOf(1);
  auto& picker = contentOf<FormPicker>(form, "picker");
  picker.choices = {{"broken", "Choice\n1"}, {"whole", "Choice 2"}};
  picker.value = "broken";
  screen_.show(form);
  ASSERT_TRUE(screen_.eventually([&] { return heightOf("Choice\n1") > 0; }));
  const int height = heightOf("Choice\n1");
  picker.value = "whole";
  screen_.tell(form);
  ASSERT_TRUE(screen_.eventually([&] { return heightOf("Choice 2") > 0; }));
  EXPECT_EQ(height, heightOf("Choice 2"));
}

}  // namespace
}  // namespace orvane::window
