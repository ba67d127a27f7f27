#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

#include "foundation/utf8.h"
#include "settings/color_hex.h"
#include "settings/settings_view.h"

namespace orvane {
namespace {

bool isPart(double component) { return component >= 0 && component <= 1; }

// Whether a control, as it stands in the form, can be given a value.
struct Takes {
  const FormValue& value;

  bool operator()(const FormToggle&) const { return std::holds_alternative<bool>(value); }
  bool operator()(const FormPicker& picker) const {
    const auto* id = std::get_if<std::string>(&value);
    return id && std::any_of(picker.choices.begin(), picker.choices.end(),
                             [&](const FormChoice& choice) { return choice.id == *id; });
  }
  bool operator()(const FormTextField& field) const {
    const auto* text = std::get_if<std::string>(&value);
    return text && text->size() <= field.longest && isWellFormedUTF8(*text);
  }
  bool operator()(const FormSlider& slider) const {
    const auto* number = std::get_if<double>(&value);
    return number && *number >= slider.lowest && *number <= slider.highest;
  }
  bool operator()(const FormColorPicker&) const {
    const auto* color = std::get_if<Color>(&value);
    if (!color) return false;
    const SRGB srgb = color->resolved();
    return isPart(srgb.red) && isPart(srgb.green) && isPart(srgb.blue) && isPart(srgb.opacity);
  }
  bool operator()(const FormSourceList&) const { return false; }
  bool operator()(const FormPreview&) const { return false; }
  bool operator()(const FormCaption&) const { return false; }
};

bool offersInList(const FormSourceList& list, const FormEdit& edit) {
  if (edit.key == list.all.key) {
    return list.all.isEnabled && std::holds_alternative<std::monostate>(edit.value);
  }
  return std::holds_alternative<bool>(edit.value) &&
         std::any_of(list.rows.begin(), list.rows.end(),
                     [&](const FormRow& row) { return row.key == edit.key; });
}

bool offersIn(const FormControl& control, const FormEdit& edit) {
  if (!control.isEnabled) return false;
  if (const auto* list = std::get_if<FormSourceList>(&control.content)) {
    return offersInList(*list, edit);
  }
  return control.key == edit.key && std::visit(Takes{edit.value}, control.content);
}

bool offersIn(const FormTab& tab, const FormEdit& edit) {
  return findControl(tab, [&](const FormControl& control) { return offersIn(control, edit); });
}

// Setting what is set already would write it down, fetch the agenda anew and perhaps hide icons
// once more, which nobody asked for.
template <class T>
void assign(Published<T>& property, const T& value) {
  if (property.get() != value) property = value;
}

template <auto property>
void put(DashboardSettings& settings, const FormValue& value) {
  using T = std::decay_t<decltype((settings.*property).get())>;
  assign(settings.*property, std::get<T>(value));
}

void putDisplayMode(DashboardSettings& settings, const FormValue& value) {
  const auto mode = displayModeFromRawValue(std::get<std::string>(value));
  if (mode) assign(settings.displayMode, *mode);
}

void putThemeMode(DashboardSettings& settings, const FormValue& value) {
  const auto mode = themeModeFromRawValue(std::get<std::string>(value));
  if (mode) assign(settings.themeMode, *mode);
}

using Put = void (*)(DashboardSettings&, const FormValue&);

// The controls whose value is a property's.
const std::map<std::string, Put, std::less<>>& bindings() {
  using S = DashboardSettings;
  static const std::map<std::string, Put, std::less<>> map = {
      {"displayMode", putDisplayMode},
      {"selectedDisplayID", put<&S::selectedDisplayID>},
      {"showOnAllSpaces", put<&S::showOnAllSpaces>},
      {"launchAtLogin", put<&S::launchAtLogin>},
      {"focusMode", put<&S::focusMode>},
      {"hideDesktopIconsInFocus", put<&S::hideDesktopIconsInFocus>},
      {"countdownIncludesEvents", put<&S::countdownIncludesEvents>},
      {"countdownIncludesReminders", put<&S::countdownIncludesReminders>},
      {"countdownIncludesAllDayEvents", put<&S::countdownIncludesAllDayEvents>},
      {"urgencyTinting", put<&S::urgencyTinting>},
      {"ignoredWordsText", put<&S::ignoredWordsText>},
      {"themeMode", putThemeMode},
      {"glassOpacity", put<&S::glassOpacity>}};
  return map;
}

}  // namespace

bool SettingsView::offers(const FormEdit& edit) const {
  const Form shown = form();
  const auto* tag = std::get_if<std::string>(&edit.value);
  const bool choosesTab = tag && edit.key == Form::selectedTabKey;
  return std::any_of(shown.tabs.begin(), shown.tabs.end(), [&](const FormTab& tab) {
    return choosesTab ? tab.tag == *tag : offersIn(tab, edit);
  });
}

// Whatever comes of it is told, so that a window which shows the edit already can put itself right.
void SettingsView::edit(const FormEdit& edit) {
  announceLater();
  if (offers(edit)) apply(edit);
}

void SettingsView::apply(const FormEdit& edit) {
  if (edit.key == Form::selectedTabKey) {
    selectedTab_ = std::get<std::string>(edit.value);
  } else if (edit.key == "primaryColorHex") {
    setWorkingColor(std::get<Color>(edit.value));
  } else if (const auto found = bindings().find(edit.key); found != bindings().end()) {
    found->second(*settings_, edit.value);
  } else if (const auto* isOn = std::get_if<bool>(&edit.value)) {
    selectSource(edit.key, *isOn);
  } else {
    clearSources(edit.key);
  }
}

void SettingsView::selectSource(std::string_view rowKey, bool isOn) {
  const auto slash = rowKey.find('/');
  const std::string id(rowKey.substr(slash + 1));
  const bool isCalendar = rowKey.substr(0, slash) == calendarsKey;
  const auto& selection =
      isCalendar ? settings_->selectedCalendarIDs : settings_->selectedReminderListIDs;
  if (selection->contains(id) == isOn) return;
  isCalendar ? settings_->toggleCalendar(id) : settings_->toggleReminderList(id);
}

void SettingsView::clearSources(std::string_view buttonKey) {
  auto& selection = buttonKey.starts_with(calendarsKey) ? settings_->selectedCalendarIDs
                                                        : settings_->selectedReminderListIDs;
  selection = TextSet{};
}

void SettingsView::setWorkingColor(const Color& color) {
  const SRGB srgb = color.resolved();
  workingColor_ = Color::srgb(srgb.red, srgb.green, srgb.blue, srgb.opacity);
  if (const auto hex = hexFromColor(workingColor_)) assign(settings_->primaryColorHex, *hex);
}

}  // namespace orvane
