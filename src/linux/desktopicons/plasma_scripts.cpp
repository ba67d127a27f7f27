#include "linux/desktopicons/plasma_scripts.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace orvane::host::desktopicons {
namespace {

using Json = nlohmann::json;

// Matching files are hidden (mode 2), and every file matches both.
constexpr const char* kWritten =
    R"({"filterMimeTypes":"all/all","filterMode":"2","filterPattern":"*"})";

// All desktops that show a folder, of every screen and activity. Values are read and written in the
// type that Plasma keeps them in, else what is on the screen does not follow.
constexpr const char* kFolders = R"js(
var lists = ["filterMimeTypes", "positions"];
var keys = ["filterMode", "filterPattern"].concat(lists);
var folders = desktops().filter(function (desktop) {
  desktop.currentConfigGroup = ["General"];
  return desktop.type === "org.kde.plasma.folder";
});
function isSet(desktop, key) { return desktop.configKeys.indexOf(key) >= 0; }
function read(desktop, key) {
  return lists.indexOf(key) >= 0 ? desktop.readConfig(key, []) : String(desktop.readConfig(key));
}
function find(desktop, states) {
  return states.filter(function (state) { return state.id === desktop.id; })[0];
}
)js";

constexpr const char* kCapture = R"js(
function capture() {
  print(JSON.stringify(folders.map(function (desktop) {
    var set = {};
    keys.forEach(function (key) { if (isSet(desktop, key)) set[key] = read(desktop, key); });
    return {id: desktop.id, set: set};
  })));
}
)js";

constexpr const char* kHide = R"js(
function hide(before, written) {
  folders.forEach(function (desktop) {
    if (!find(desktop, before)) return;
    Object.keys(written).forEach(function (key) { desktop.writeConfig(key, written[key]); });
    desktop.reloadConfig();
  });
}
)js";

// Scripts can write entries but not take them away, except in the shell's file itself. Whether it
// is the one of this shell shows when it follows what is written. The places come after the filter,
// when the files are there again.
constexpr const char* kGiveBack = R"js(
var defaults = {filterMode: 0, filterPattern: "*", filterMimeTypes: ["all/all"], positions: []};
function entries(desktop) {
  var file = new ConfigFile("plasma-org.kde.plasma.desktop-appletsrc", "Containments");
  return new ConfigFile(new ConfigFile(file, String(desktop.id)), "General");
}
function isOurs(desktop, written) {
  return Object.keys(written).every(function (key) {
    return String(desktop.readConfig(key)) === written[key];
  });
}
function restore(desktop, key, set, file) {
  if (key in set) {
    desktop.writeConfig(key, set[key]);
  } else if (isSet(desktop, key)) {
    desktop.writeConfig(key, defaults[key]);
    if (file) file.deleteEntry(key);
  }
}
function giveBack(before, written) {
  folders.forEach(function (desktop) {
    var state = find(desktop, before);
    if (!state || !isOurs(desktop, written)) return;
    var file = entries(desktop);
    var hidden = String(file.readEntry("filterMode"));
    desktop.writeConfig("filterMode", defaults.filterMode);
    if (String(file.readEntry("filterMode")) === hidden) file = null;
    ["filterMode", "filterPattern", "filterMimeTypes"].forEach(function (key) {
      restore(desktop, key, state.set, file);
    });
    desktop.reloadConfig();
    restore(desktop, "positions", state.set, file);
    desktop.reloadConfig();
  });
}
)js";

Json parsed(const std::string& text) { return Json::parse(text, nullptr, false); }

bool isValue(const Json& value) {
  const auto isText = [](const Json& part) { return part.is_string(); };
  return isText(value) || (value.is_array() && std::ranges::all_of(value, isText));
}

bool isDesktop(const Json& desktop) {
  return desktop.is_object() && desktop.contains("id") && desktop["id"].is_number_unsigned() &&
         desktop.contains("set") && desktop["set"].is_object() &&
         std::ranges::all_of(desktop["set"], isValue);
}

// ASCII alone, so that it is a value in every script.
std::string literal(const Json& value) { return value.dump(-1, ' ', true); }

std::optional<std::string> scriptWith(const char* function, const char* call,
                                      const IconState& state) {
  const auto before = parsed(state.before);
  const auto written = parsed(state.written);
  if (!before.is_array() || !std::ranges::all_of(before, isDesktop)) return std::nullopt;
  if (!written.is_object() || !std::ranges::all_of(written, isValue)) return std::nullopt;
  return std::string(kFolders) + function + call + "(" + literal(before) + ", " + literal(written) +
         ");\n";
}

}  // namespace

std::string plasmaCaptureScript() {
  std::string script = kFolders;
  script += kCapture;
  return script += "capture();\n";
}

std::optional<IconState> plasmaState(const std::string& printed) {
  const auto desktops = parsed(printed);
  if (!desktops.is_array() || desktops.empty()) return std::nullopt;
  if (!std::ranges::all_of(desktops, isDesktop)) return std::nullopt;
  return IconState{literal(desktops), kWritten};
}

std::optional<NewIcons> plasmaNewIcons(const IconState& known, const std::string& printed) {
  auto before = parsed(known.before);
  const auto state = plasmaState(printed);
  if (!state || !before.is_array() || !std::ranges::all_of(before, isDesktop)) return std::nullopt;
  auto came = Json::array();
  for (auto& desktop : parsed(state->before)) {
    const auto isSame = [&desktop](const Json& old) { return old["id"] == desktop["id"]; };
    if (std::ranges::none_of(before, isSame)) came.push_back(std::move(desktop));
  }
  if (came.empty()) return std::nullopt;
  before.insert(before.end(), came.begin(), came.end());
  return NewIcons{{literal(came), known.written}, {literal(before), known.written}};
}

std::optional<std::string> plasmaHideScript(const IconState& state) {
  return scriptWith(kHide, "hide", state);
}

std::optional<std::string> plasmaGiveBackScript(const IconState& state) {
  return scriptWith(kGiveBack, "giveBack", state);
}

}  // namespace orvane::host::desktopicons
