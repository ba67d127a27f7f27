// tools/ holds programs for those who build the dashboard. `orvane-snapshot` runs the whole
// pipeline offscreen, at a fixed instant: calendars in, a picture and a description out.
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/date_components.h"
#include "view/geometry.h"

namespace orvane::tools {

struct SettingAssignment {
  std::string property;
  std::string value;

  friend bool operator==(const SettingAssignment&, const SettingAssignment&) = default;
};

struct SnapshotOptions {
  std::vector<std::string> calendars;   // folders like $XDG_DATA_HOME/orvane/calendars
  DateComponents now;                   // local time
  std::optional<std::string> timeZone;  // the system's when absent
  std::optional<std::string> locale;
  Size size{1920, 1080};  // points
  double scale = 1;       // pixels per point
  std::vector<SettingAssignment> settings;
  bool deniesEvents = false;
  bool deniesReminders = false;
  std::string background = "#203040";  // a colour, or the path of a PNG file
  std::optional<std::string> picturePath;
  std::optional<std::string> dumpPath;
};

struct HelpRequested {};

// What is wrong, as one line for a person.
struct ArgumentError {
  std::string message;
};

using ParsedArguments = std::variant<SnapshotOptions, HelpRequested, ArgumentError>;

// `--option value` or `--option=value`. Says only what can be told from the words alone: whether a
// zone, a folder or a property exists is for those who know them.
ParsedArguments parseArguments(const std::vector<std::string>& arguments);

extern const char* const usage;

}  // namespace orvane::tools
