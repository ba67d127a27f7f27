#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "linux/locale/region.h"

namespace orvane::host {

// The ICU name of a POSIX locale name: without codeset, a script or variant modifier where ICU
// expects it ("sr_RS.UTF-8@latin" is "sr_Latn_RS"), other modifiers left out. "C", "POSIX" and
// empty names are plain English, "en_US".
[[nodiscard]] std::string icuLocaleName(std::string_view posixName);

// The ICU name of a locale that was named in either way, when there are texts for its language.
[[nodiscard]] std::optional<std::string> knownLocaleName(std::string_view name);

// The locale that the environment names for dates (LC_ALL, then LC_TIME, then LANG), or plain
// English where it names none that there are texts for.
[[nodiscard]] std::string systemLocaleName(const SystemPlaces& places);

}  // namespace orvane::host
