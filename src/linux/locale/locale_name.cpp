#include "linux/locale/locale_name.h"

#include <algorithm>
#include <array>
#include <utility>

namespace orvane::host {
namespace {

constexpr const char* kPlain = "en_US";

struct PosixName {
  std::string_view language, territory, modifier;
};

// language[_script][_territory][.codeset][@modifier], as POSIX and ICU write it; with hyphens it is
// a language tag.
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

bool isPlain(std::string_view language) {
  std::string name(language);
  for (char& letter : name) {
    if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - ('a' - 'A'));
  }
  return name.empty() || name == "C" || name == "POSIX";
}

// ICU's own way to say more: "de_DE@calendar=gregorian", "de-DE-u-hc-h12".
bool hasKeywords(std::string_view name) {
  const auto at = name.find('@');
  return (at != name.npos && name.find('=', at) != name.npos) || name.find("-u-") != name.npos;
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
  if (isPlain(parts.language)) return kPlain;
  if (hasKeywords(posixName)) return std::string(posixName);
  std::string name(parts.language);
  const auto script = scriptOf(parts.modifier);
  if (!script.empty()) name.append("_").append(script);
  if (!parts.territory.empty()) name.append("_").append(parts.territory);
  std::replace(name.begin(), name.end(), '-', '_');
  if (parts.modifier == "valencia") {
    name.append(parts.territory.empty() ? "__VALENCIA" : "_VALENCIA");
  }
  return name;
}

std::optional<std::string> knownLocaleName(std::string_view name) {
  if (name.empty()) return std::nullopt;
  auto icuName = icuLocaleName(name);
  return isLocale(icuName) ? std::optional(std::move(icuName)) : std::nullopt;
}

std::string systemLocaleName(const SystemPlaces& places) {
  for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) {
    const auto value = places.environment(variable);
    if (!value || value->empty()) continue;
    return knownLocaleName(*value).value_or(kPlain);
  }
  return kPlain;
}

}  // namespace orvane::host
