#include "linux/locale/locale_name.h"

#include <array>
#include <utility>

namespace orvane::host {
namespace {

constexpr const char* kPlain = "en_US";

struct PosixName {
  std::string_view language, territory, modifier;
};

// language[_territory][.codeset][@modifier]
PosixName split(std::string_view name) {
  PosixName parts;
  if (const auto at = name.find('@'); at != name.npos) {
    parts.modifier = name.substr(at + 1);
    name = name.substr(0, at);
  }
  name = name.substr(0, name.find('.'));
  const auto underscore = name.find_first_of("_-");
  parts.language = name.substr(0, underscore);
  if (underscore != name.npos) parts.territory = name.substr(underscore + 1);
  return parts;
}

std::string_view scriptOf(std::string_view modifier) {
  using Entry = std::pair<std::string_view, std::string_view>;
  constexpr std::array<Entry, 5> kScripts{Entry{"latin", "Latn"}, Entry{"cyrillic", "Cyrl"},
                                          Entry{"devanagari", "Deva"}, Entry{"iqtelif", "Latn"},
                                          Entry{"arabic", "Arab"}};
  for (const auto& [name, script] : kScripts) {
    if (name == modifier) return script;
  }
  return {};
}

}  // namespace

std::string icuLocaleName(std::string_view posixName) {
  const auto parts = split(posixName);
  if (parts.language.empty() || parts.language == "C" || parts.language == "POSIX") return kPlain;
  std::string name(parts.language);
  const auto script = scriptOf(parts.modifier);
  if (!script.empty()) name.append("_").append(script);
  if (!parts.territory.empty()) name.append("_").append(parts.territory);
  if (parts.modifier == "valencia") {
    name.append(parts.territory.empty() ? "__VALENCIA" : "_VALENCIA");
  }
  return name;
}

std::string systemLocaleName(const SystemPlaces& places) {
  for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) {
    const auto value = places.environment(variable);
    if (!value || value->empty()) continue;
    auto name = icuLocaleName(*value);
    return isLocale(name) ? name : kPlain;
  }
  return kPlain;
}

}  // namespace orvane::host
