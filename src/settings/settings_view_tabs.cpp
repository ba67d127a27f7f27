#include <algorithm>
#include <string_view>
#include <utility>

#include "settings/settings_view.h"
#include "settings/settings_view_preview.h"
#include "wallpaper/wallpaper_window_controller.h"

namespace orvane {
namespace {

constexpr double lowestGlassStrength = 0.45;
constexpr double highestGlassStrength = 0.95;
constexpr std::size_t longestIgnoredWords = 64 * 1024;

FormControl toggle(std::string key, std::string label, bool isOn, bool isEnabled = true) {
  return {std::move(key), std::move(label), isEnabled, FormToggle{isOn}};
}

FormControl picker(std::string key, std::string label, std::string_view value,
                   std::vector<FormChoice> choices) {
  return {std::move(key), std::move(label), true,
          FormPicker{std::string(value), std::move(choices)}};
}

FormChoice choice(DashboardDisplayMode mode, std::string title) {
  return {std::string(rawValue(mode)), std::move(title)};
}

FormChoice choice(DashboardThemeMode mode, std::string title) {
  return {std::string(rawValue(mode)), std::move(title)};
}

// The nearest position that the slider has; its lower end for what is no number at all.
double onSlider(double strength) {
  if (!(strength >= lowestGlassStrength)) return lowestGlassStrength;
  return std::min(strength, highestGlassStrength);
}

}  // namespace

FormControl SettingsView::sourceList(SourceListTexts texts,
                                     const std::vector<EventKitSourceOption>& options,
                                     const TextSet& selectedIDs) {
  FormSourceList list;
  list.all = {texts.key + ".all", "All", !selectedIDs.empty()};
  list.height = 310;
  list.minHeight = 260;
  list.rowSpacing = 8;
  list.padding = 12;
  list.rows.reserve(options.size());
  for (const auto& option : options) {
    list.rows.push_back(
        {texts.key + "/" + option.id, option.title, selectedIDs.contains(option.id)});
  }
  if (options.empty()) {
    list.emptyState = FormEmptyState{"questionmark.folder", std::move(texts.emptyText)};
  }
  return {std::move(texts.key), std::move(texts.title), true, std::move(list)};
}

FormTab SettingsView::sourcesTab() const {
  auto calendars =
      sourceList({calendarsKey, "Calendars", "Grant Calendar access, then refresh."},
                 taskManager_->calendarOptions.get(), settings_->selectedCalendarIDs.get());
  auto lists =
      sourceList({listsKey, "Reminder Lists", "Grant Reminders access, then refresh."},
                 taskManager_->reminderListOptions.get(), settings_->selectedReminderListIDs.get());
  return {"Sources", "calendar", "sources", {{"", {std::move(calendars), std::move(lists)}}}, true};
}

// No identifier at all stands for whichever display is the main one, which is also what the board
// falls back to. A display that is chosen but not attached stays chosen, and none is shown as such.
FormControl SettingsView::selectedDisplayPicker() const {
  std::vector<FormChoice> choices{{"", "Automatic"}};
  for (auto& display : WallpaperWindowController::availableDisplays(environment_.windowServer)) {
    choices.push_back({std::move(display.id), std::move(display.name)});
  }
  auto control = picker("selectedDisplayID", "Selected display", settings_->selectedDisplayID.get(),
                        std::move(choices));
  control.isEnabled = settings_->displayMode.get() == DashboardDisplayMode::selected;
  return control;
}

// Whether icons are hidden is decided when focus mode is switched on, so that afterwards there is
// nothing to decide until it is off again.
FormTab SettingsView::displayTab() const {
  using enum DashboardDisplayMode;
  const auto& settings = *settings_;
  return {"Display",
          "display",
          "display",
          {{"",
            {picker("displayMode", "Dashboard display", rawValue(settings.displayMode.get()),
                    {choice(main, "Main Display"), choice(all, "All Displays"),
                     choice(selected, "Selected Display")}),
             selectedDisplayPicker(),
             toggle("showOnAllSpaces", "Show on every Space", settings.showOnAllSpaces),
             toggle("launchAtLogin", "Launch at login", settings.launchAtLogin),
             toggle("focusMode", "Focus mode", settings.focusMode),
             toggle("hideDesktopIconsInFocus", "Hide desktop icons in Focus mode",
                    settings.hideDesktopIconsInFocus, !settings.focusMode.get())}}}};
}

FormTab SettingsView::smartNextTab() const {
  const auto& settings = *settings_;
  const FormTextField words{settings.ignoredWordsText.get(), "lunch, birthday, holiday",
                            longestIgnoredWords};
  return {"Smart Next",
          "timer",
          "smart",
          {{"",
            {toggle("countdownIncludesEvents", "Calendar events can drive Next Up",
                    settings.countdownIncludesEvents),
             toggle("countdownIncludesReminders", "Reminders with due dates can drive Next Up",
                    settings.countdownIncludesReminders),
             toggle("countdownIncludesAllDayEvents", "Allow all-day events to drive Next Up",
                    settings.countdownIncludesAllDayEvents),
             toggle("urgencyTinting", "Use urgency colors as deadlines approach",
                    settings.urgencyTinting)}},
           {"Ignored words",
            {{"ignoredWordsText", "Ignored words", true, words},
             {"ignoredWordsCaption",
              "If an event or reminder title contains one of these words, it appears in the list "
              "but does not become the main countdown.",
              true, FormCaption{}}}}}};
}

FormTab SettingsView::styleTab() const {
  using enum DashboardThemeMode;
  const FormSlider strength{onSlider(settings_->glassOpacity.get()), lowestGlassStrength,
                            highestGlassStrength};
  return {"Style",
          "paintpalette",
          "style",
          {{"",
            {picker("themeMode", "Theme", rawValue(settings_->themeMode.get()),
                    {choice(vividBlue, "Vivid Blue"), choice(dark, "Dark Glass"),
                     choice(light, "Light Glass")}),
             {"primaryColorHex", "Primary color", true, FormColorPicker{workingColor()}},
             {"glassOpacity", "Glass strength", true, strength}}},
           {"Preview",
            {{"preview", "Preview", true,
              nextUpPreview(appearanceOf(*settings_), environment_.locale,
                            environment_.mainActor.now())}}}}};
}

}  // namespace orvane
