#include "settings/settings_view.h"

#include <cmath>
#include <set>

#include "fakes/cell_measurer.h"
#include "settings_view_fixture.h"
#include "view/layout.h"
#include "view/symbols.h"

namespace orvane {
namespace {

using SettingsViewTest = SettingsViewFixture;

TEST_F(SettingsViewTest, IsThisFormForAFreshUser) {
  EXPECT_EQ(
      fakes::FormText::of(view().form()),
      "header \"Orvane\"\n"
      "tab* sources\n"
      "  selectedCalendarIDs \"Calendars\" list of 0\n"
      "    selectedCalendarIDs.all \"All\" button (disabled)\n"
      "    empty: questionmark.folder \"Grant Calendar access, then refresh.\"\n"
      "  selectedReminderListIDs \"Reminder Lists\" list of 0\n"
      "    selectedReminderListIDs.all \"All\" button (disabled)\n"
      "    empty: questionmark.folder \"Grant Reminders access, then refresh.\"\n"
      "tab display\n"
      "  displayMode \"Dashboard display\" picker [*main: Main Display] [all: All Displays] "
      "[selected: Selected Display]\n"
      "  selectedDisplayID \"Selected display\" picker [*: Automatic] [11: Display 1 - Main] "
      "(disabled)\n"
      "  showOnAllSpaces \"Show on every Space\" on\n"
      "  launchAtLogin \"Launch at login\" off\n"
      "  focusMode \"Focus mode\" off\n"
      "  hideDesktopIconsInFocus \"Hide desktop icons in Focus mode\" on\n"
      "tab smart\n"
      "  countdownIncludesEvents \"Calendar events can drive Next Up\" on\n"
      "  countdownIncludesReminders \"Reminders with due dates can drive Next Up\" on\n"
      "  countdownIncludesAllDayEvents \"Allow all-day events to drive Next Up\" off\n"
      "  urgencyTinting \"Use urgency colors as deadlines approach\" on\n"
      "  section \"Ignored words\"\n"
      "  ignoredWordsText \"Ignored words\" text \"lunch, birthday, holiday\", else \"lunch, "
      "birthday, holiday\"\n"
      "  ignoredWordsCaption \"If an event or reminder title contains one of these words, it "
      "appears in the list but does not become the main countdown.\" caption\n"
      "tab style\n"
      "  themeMode \"Theme\" picker [*vividBlue: Vivid Blue] [dark: Dark Glass] [light: Light "
      "Glass]\n"
      "  primaryColorHex \"Primary color\" color 0.239216 0.360784 0.94902\n"
      "  glassOpacity \"Glass strength\" slider 0.82 in 0.45...0.95\n"
      "  section \"Preview\"\n"
      "  preview \"Preview\" preview 420 x 240\n"
      "footer \"Calendar and Reminder data stays local on this Mac.\"\n"
      "  done \"Done\" button, default, closes\n");
}

TEST_F(SettingsViewTest, HasAHeaderAndAFooter) {
  const Form form = view().form();
  EXPECT_EQ(form.size, (Size{760, 620}));
  EXPECT_EQ(form.header.symbol, "calendar.badge.clock");
  EXPECT_EQ(form.header.title, (FormText{"Orvane", FormTextStyle::title, true}));
  EXPECT_EQ(form.header.subtitle,
            (FormText{"Ambient ETA wallpaper powered by Apple Calendar and Reminders.",
                      FormTextStyle::callout}));
  EXPECT_EQ(form.footer.note.style, FormTextStyle::callout);
  EXPECT_TRUE(form.footer.note.isSecondary);
}

TEST_F(SettingsViewTest, HasFourTabsWithSymbolsOfItsOwn) {
  std::string tabs;
  for (const auto& tab : view().form().tabs) {
    tabs += tab.label + ": " + tab.symbol + ": " + tab.tag + "\n";
    EXPECT_FALSE(symbolDrawing(tab.symbol).strokes.empty()) << tab.symbol;
  }
  EXPECT_EQ(tabs,
            "Sources: calendar: sources\nDisplay: display: display\nSmart Next: timer: smart\n"
            "Style: paintpalette: style\n");
  EXPECT_TRUE(tab(0).isSideBySide);
}

TEST_F(SettingsViewTest, ListsOfSourcesHaveTheirSizes) {
  const auto list = calendars();
  EXPECT_EQ(list.height, 310);
  EXPECT_EQ(list.minHeight, 260);
  EXPECT_EQ(list.rowSpacing, 8);
  EXPECT_EQ(list.padding, 12);
}

TEST_F(SettingsViewTest, OffersEachKindOfSourceInItsOwnList) {
  offerCalendars({{"w", "Work"}, {"h", "Home"}});
  manager()->reminderListOptions = {{"w", "Errands", EKEntityType::reminder}};
  settings()->selectedCalendarIDs = TextSet{"w"};
  EXPECT_EQ(fakes::FormText::of(tab(0)),
            "  selectedCalendarIDs \"Calendars\" list of 2\n"
            "    selectedCalendarIDs.all \"All\" button\n"
            "    selectedCalendarIDs/w \"Work\" on\n"
            "    selectedCalendarIDs/h \"Home\" off\n"
            "  selectedReminderListIDs \"Reminder Lists\" list of 1\n"
            "    selectedReminderListIDs.all \"All\" button (disabled)\n"
            "    selectedReminderListIDs/w \"Errands\" off\n");
}

// What is selected may have vanished, and must still be possible to let go.
TEST_F(SettingsViewTest, AllIsThereForASelectionWithoutOptions) {
  settings()->selectedCalendarIDs = TextSet{"vanished"};
  EXPECT_TRUE(calendars().all.isEnabled);
  EXPECT_TRUE(calendars().emptyState);
  edit("selectedCalendarIDs.all");
  EXPECT_TRUE(settings()->selectedCalendarIDs->empty());
}

TEST_F(SettingsViewTest, NamesArePassedThrough) {
  const std::string longName(5000, 'x');
  offerCalendars(
      {{"1", ""}, {"2", longName}, {"3", "🎉 Party"}, {"4", "יומן עבודה"}, {"5", "a\nb"}});
  const auto rows = calendars().rows;
  ASSERT_EQ(rows.size(), 5U);
  EXPECT_EQ(rows[0].label, "");
  EXPECT_EQ(rows[1].label, longName);
  EXPECT_EQ(rows[2].label, "🎉 Party");
  EXPECT_EQ(rows[3].label, "יומן עבודה");
  EXPECT_EQ(rows[4].label, "a\nb");
}

TEST_F(SettingsViewTest, FiveHundredCalendarsAreFiveHundredRows) {
  std::vector<EventKitSourceOption> options;
  for (int index = 0; index < 500; ++index) {
    options.push_back({"id/" + std::to_string(index), "Calendar " + std::to_string(index)});
  }
  offerCalendars(options);
  edit("selectedCalendarIDs/id/499", true);
  const auto rows = calendars().rows;
  ASSERT_EQ(rows.size(), 500U);
  EXPECT_TRUE(rows[499].isOn);
  EXPECT_FALSE(rows[49].isOn);
  EXPECT_EQ(settings()->selectedCalendarIDs.get(), TextSet{"id/499"});
}

TEST_F(SettingsViewTest, TheDisplayIsChosenOnlyWhereItCounts) {
  for (const auto mode : allDashboardDisplayModes) {
    settings()->displayMode = mode;
    EXPECT_EQ(control("selectedDisplayID").isEnabled, mode == DashboardDisplayMode::selected);
  }
}

TEST_F(SettingsViewTest, AllAttachedDisplaysAreOfferedAfterAutomatic) {
  server_.attach("right", {1920, 0, 1280, 1024}, std::nullopt);
  settings()->selectedDisplayID = std::string("1920:0:1280:1024");
  const FormPicker picker = contentOf<FormPicker>("selectedDisplayID");
  EXPECT_EQ(picker.choices,
            (std::vector<FormChoice>{{"", "Automatic"},
                                     {"11", "Display 1 - Main"},
                                     {"1920:0:1280:1024", "Display 2 - 1280 x 1024"}}));
  EXPECT_EQ(picker.value, "1920:0:1280:1024");
}

TEST_F(SettingsViewTest, WithoutDisplaysOnlyAutomaticIsOffered) {
  server_.remove("left");
  EXPECT_EQ(contentOf<FormPicker>("selectedDisplayID").choices,
            (std::vector<FormChoice>{{"", "Automatic"}}));
}

TEST_F(SettingsViewTest, AStoredDisplayThatIsNotAttachedStaysStoredAndNoneIsShownAsChosen) {
  defaults_.values["DashboardSettings.selectedDisplayID"] = std::string("77");
  const FormPicker picker = contentOf<FormPicker>("selectedDisplayID");
  EXPECT_EQ(picker.value, "77");
  EXPECT_EQ(picker.choices.size(), 2U);
  EXPECT_TRUE(defaults_.writes.empty());
}

TEST_F(SettingsViewTest, HidingIconsIsDecidedBeforeFocusModeIsOn) {
  EXPECT_TRUE(control("hideDesktopIconsInFocus").isEnabled);
  settings()->focusMode = true;
  EXPECT_FALSE(control("hideDesktopIconsInFocus").isEnabled);
  EXPECT_TRUE(control("focusMode").isEnabled);
}

TEST_F(SettingsViewTest, TheSliderShowsTheNearestStrengthItHas) {
  const std::pair<double, double> shown[] = {{0.45, 0.45},  {0.95, 0.95},        {0.6, 0.6},
                                             {1.7, 0.95},   {0.1, 0.45},         {-3, 0.45},
                                             {1e300, 0.95}, {std::nan(""), 0.45}};
  for (const auto& [stored, expected] : shown) {
    settings()->glassOpacity = stored;
    EXPECT_EQ(contentOf<FormSlider>("glassOpacity").value, expected) << stored;
  }
  settings()->glassOpacity = 1.7;
  static_cast<void>(view().form());
  EXPECT_EQ(settings()->glassOpacity.get(), 1.7);
}

TEST_F(SettingsViewTest, ATextThatIsNoColourShowsTheColourOfTheBoard) {
  defaults_.values["DashboardSettings.primaryColorHex"] = std::string("reddish");
  EXPECT_EQ(contentOf<FormColorPicker>("primaryColorHex").color, Color::srgb(0.24, 0.36, 0.95));
  EXPECT_EQ(*settings()->primaryColorHex, "reddish");
}

// The lines of the preview's picture.
std::string pictureOf(const FormPreview& preview) {
  return describe(layout(preview.view, preview.size, fakes::CellMeasurer()).list);
}

TEST_F(SettingsViewTest, ThePreviewIsTheCardOfTheBoardWithinItsSize) {
  const auto preview = contentOf<FormPreview>("preview");
  const Layout laidOut = layout(preview.view, preview.size, fakes::CellMeasurer());
  std::vector<std::string> texts;
  for (const auto& item : laidOut.list) {
    if (const auto* text = std::get_if<TextItem>(&item.content)) texts.push_back(text->text);
  }
  EXPECT_EQ(texts, (std::vector<std::string>{"Next Up", "Calendar", "02:24:36", "Team review",
                                             "Work at Nov 20, 2026 at 1:00 PM"}));
  ASSERT_EQ(laidOut.frames.size(), 1U);
  EXPECT_EQ(laidOut.frames[0].name, "NextUpCard");
  const Rect card = laidOut.frames[0].frame;
  EXPECT_EQ(card.width, 372);
  EXPECT_GE(card.y, 12);
  EXPECT_LE(card.y + card.height, preview.size.height - 12);
}

TEST_F(SettingsViewTest, ThePreviewFollowsColourStrengthAndTheme) {
  std::set<std::string> pictures{pictureOf(contentOf<FormPreview>("preview"))};
  edit("primaryColorHex", Color::srgb(1, 0, 0));
  pictures.insert(pictureOf(contentOf<FormPreview>("preview")));
  edit("glassOpacity", 0.5);
  pictures.insert(pictureOf(contentOf<FormPreview>("preview")));
  edit("themeMode", std::string("light"));
  pictures.insert(pictureOf(contentOf<FormPreview>("preview")));
  EXPECT_EQ(pictures.size(), 4U);
}

TEST_F(SettingsViewTest, TheSameInputsMakeTheSameForm) {
  const Form before = view().form();
  actor_.advance(std::chrono::minutes(5));
  EXPECT_EQ(view().form(), before);
  settings()->urgencyTinting = false;
  EXPECT_NE(view().form(), before);
}

}  // namespace
}  // namespace orvane
