#pragma once

#include <set>
#include <string>

#include "foundation/color.h"
#include "foundation/observable.h"
#include "platform/sm_app_service.h"
#include "platform/user_defaults.h"
#include "settings/display_mode.h"
#include "settings/theme_mode.h"

namespace orvane {

using TextSet = std::set<std::string>;

// Every preference of the user. There is one for the whole run, shared by all who read or observe
// it. Creating it reads each value back from the user defaults and writes nothing; assigning to a
// property announces the change, puts it in place and writes it down at once, also when the value
// is an equal one. Values are kept as they are given: nothing is clamped or checked. Main thread
// only; the defaults and the service must outlive it.
class DashboardSettings : public ObservableObject {
 private:
  // Before the properties, which are made with them.
  UserDefaults& defaults_;
  SMAppService& appService_;

  template <class T>
  Published<T> stored(const char* name, T fallback);

 public:
  DashboardSettings(UserDefaults& defaults, SMAppService& appService);

  Published<bool> showOnAllSpaces;
  Published<DashboardDisplayMode> displayMode;
  Published<std::string> selectedDisplayID;
  // Follows the registration, which may be changed outside the program: a change that the service
  // refuses springs back.
  Published<bool> launchAtLogin;
  // Identifiers; an empty set means all.
  Published<TextSet> selectedCalendarIDs;
  Published<TextSet> selectedReminderListIDs;
  Published<bool> countdownIncludesEvents;
  Published<bool> countdownIncludesReminders;
  Published<bool> countdownIncludesAllDayEvents;
  Published<std::string> ignoredWordsText;
  Published<std::string> primaryColorHex;
  Published<double> glassOpacity;
  Published<DashboardThemeMode> themeMode;
  Published<bool> urgencyTinting;
  Published<bool> hideDesktopIconsInFocus;
  Published<bool> focusMode;

  // Takes the identifier out of the selection if it is in it, else puts it in.
  void toggleCalendar(const std::string& id);
  void toggleReminderList(const std::string& id);

  // The words between the commas of `ignoredWordsText`, trimmed, in the case in which they were
  // written; empty ones do not count.
  [[nodiscard]] TextSet smartNextIgnoredWords() const;
  [[nodiscard]] Color secondaryTextColor() const;

 private:
  [[nodiscard]] bool isRegisteredAtLogin() const;
  void saveLaunchAtLogin();
};

}  // namespace orvane
