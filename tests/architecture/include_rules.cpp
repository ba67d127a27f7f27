#include "architecture/include_rules.h"

#include <algorithm>
#include <map>
#include <optional>
#include <regex>
#include <set>
#include <sstream>

namespace orvane::architecture {
namespace {

using Folders = std::set<std::string, std::less<>>;

// Which folders each folder of the logic may look at, besides itself.
const std::map<std::string, Folders, std::less<>>& arrows() {
  static const std::map<std::string, Folders, std::less<>> map = {
      {"foundation", {}},
      {"view", {"foundation"}},
      {"platform", {"foundation", "view"}},
      {"settings", {"foundation", "platform"}},
      {"agenda", {"foundation", "platform", "settings"}},
      {"dashboard", {"foundation", "platform", "view", "settings", "agenda"}},
      {"wallpaper", {"foundation", "platform", "view", "settings"}},
      {"focus", {"foundation", "platform", "settings"}},
      {"app",
       {"foundation", "platform", "view", "settings", "agenda", "dashboard", "wallpaper",
        "focus"}}};
  return map;
}

// The form of the settings stands above what it edits, alone in its folder: settings_view.h and the
// files that it is divided into.
bool isSettingsForm(std::string_view path) {
  return path.starts_with("settings/settings_view.") || path.starts_with("settings/settings_view_");
}

// What it may look at, besides its own folder.
const Folders& belowTheSettingsForm() {
  static const Folders folders = {"foundation", "platform",  "view", "agenda",
                                  "dashboard",  "wallpaper", "focus"};
  return folders;
}

const Folders& standardHeaders() {
  static const Folders headers = {"algorithm",
                                  "any",
                                  "array",
                                  "atomic",
                                  "barrier",
                                  "bit",
                                  "bitset",
                                  "cassert",
                                  "cctype",
                                  "cerrno",
                                  "cfenv",
                                  "cfloat",
                                  "charconv",
                                  "chrono",
                                  "cinttypes",
                                  "climits",
                                  "clocale",
                                  "cmath",
                                  "codecvt",
                                  "compare",
                                  "complex",
                                  "concepts",
                                  "condition_variable",
                                  "coroutine",
                                  "csetjmp",
                                  "csignal",
                                  "cstdarg",
                                  "cstddef",
                                  "cstdint",
                                  "cstdio",
                                  "cstdlib",
                                  "cstring",
                                  "ctime",
                                  "cuchar",
                                  "cwchar",
                                  "cwctype",
                                  "deque",
                                  "exception",
                                  "execution",
                                  "filesystem",
                                  "forward_list",
                                  "fstream",
                                  "functional",
                                  "future",
                                  "initializer_list",
                                  "iomanip",
                                  "ios",
                                  "iosfwd",
                                  "iostream",
                                  "istream",
                                  "iterator",
                                  "latch",
                                  "limits",
                                  "list",
                                  "locale",
                                  "map",
                                  "memory",
                                  "memory_resource",
                                  "mutex",
                                  "new",
                                  "numbers",
                                  "numeric",
                                  "optional",
                                  "ostream",
                                  "queue",
                                  "random",
                                  "ranges",
                                  "ratio",
                                  "regex",
                                  "scoped_allocator",
                                  "semaphore",
                                  "set",
                                  "shared_mutex",
                                  "source_location",
                                  "span",
                                  "sstream",
                                  "stack",
                                  "stdexcept",
                                  "stop_token",
                                  "streambuf",
                                  "string",
                                  "string_view",
                                  "strstream",
                                  "syncstream",
                                  "system_error",
                                  "thread",
                                  "tuple",
                                  "type_traits",
                                  "typeindex",
                                  "typeinfo",
                                  "unordered_map",
                                  "unordered_set",
                                  "utility",
                                  "valarray",
                                  "variant",
                                  "vector",
                                  "version"};
  return headers;
}

struct Include {
  bool quoted;
  std::string name;
};

std::optional<Include> includeIn(const std::string& line) {
  static const std::regex pattern(R"(^\s*#\s*include\s*(["<])([^">]+)[">].*$)");
  std::smatch match;
  if (!std::regex_match(line, match, pattern)) return std::nullopt;
  return Include{match[1] == "\"", match[2]};
}

std::string firstPart(std::string_view path) { return std::string(path.substr(0, path.find('/'))); }

// "linux/wayland" of "linux/wayland/output.h". A folder within a folder is one of its own.
std::string_view adapterOf(std::string_view path) { return path.substr(0, path.rfind('/')); }

// What two sides say to each other may be known by both, which lie beside it and around it.
bool isSharedWire(std::string_view path, std::string_view adapter) {
  if (adapter == "linux/wire") return true;
  return adapter.ends_with("/wire") && path.starts_with(adapterOf(adapter));
}

bool isInLinux(std::string_view path) { return path.starts_with("linux/"); }
bool isHeader(std::string_view path) { return path.ends_with(".h"); }

bool allowedInLogic(std::string_view path, const Include& include) {
  if (!include.quoted) return standardHeaders().contains(include.name);
  const std::string own = firstPart(path);
  const std::string target = firstPart(include.name);
  if (include.name.find('/') == std::string::npos) return false;
  if (own == target) return true;
  if (isSettingsForm(path)) return belowTheSettingsForm().contains(target);
  const auto found = arrows().find(own);
  return found != arrows().end() && found->second.contains(target);
}

// What the adapters have in common.
const Folders& sharedAdapters() {
  static const Folders folders = {"linux/accounts", "linux/files", "linux/gio", "linux/process",
                                  "linux/xcb"};
  return folders;
}

bool allowedInAdapter(std::string_view path, const Include& include) {
  if (!include.quoted) return true;
  const std::string target = firstPart(include.name);
  if (target != "linux") return target == "foundation" || target == "platform" || target == "view";
  const std::string_view adapter = adapterOf(include.name);
  return adapter == adapterOf(path) || isSharedWire(path, adapter) ||
         sharedAdapters().contains(adapter);
}

bool namesAnAdaptedLibrary(const std::string& line) {
  static const std::regex pattern(
      R"(\b(glib|gobject|gio|gtk|gtkmm|cairo|pango\w*|wayland|wl_\w+|x11|xlib|xcb\w*|icu|libical|icalcomponent\w*|libecal|g_\w+|gtk_\w+|cairo_\w+)\b)",
      std::regex::icase);
  return std::regex_search(line, pattern);
}

// main.cpp and the files that it is divided into.
bool mayIncludeAnything(std::string_view path) {
  return path == "app/main.cpp" || path.starts_with("app/main_");
}

bool allows(std::string_view path, const Include& include) {
  return isInLinux(path) ? allowedInAdapter(path, include) : allowedInLogic(path, include);
}

std::string place(std::string_view path, int line) {
  return std::string(path) + ":" + std::to_string(line);
}

}  // namespace

std::vector<std::string> violationsIn(std::string_view path, std::string_view text) {
  std::vector<std::string> violations;
  if (mayIncludeAnything(path)) return violations;
  std::istringstream lines{std::string(text)};
  std::string line;
  for (int number = 1; std::getline(lines, line); ++number) {
    const auto include = includeIn(line);
    if (include && !allows(path, *include)) {
      violations.push_back(place(path, number) + " must not include " + include->name);
    }
    if (!isInLinux(path) && isHeader(path) && namesAnAdaptedLibrary(line)) {
      violations.push_back(place(path, number) + " names a library of an adapter");
    }
  }
  return violations;
}

}  // namespace orvane::architecture
