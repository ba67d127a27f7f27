#pragma once

#include <string>
#include <string_view>

namespace orvane::ical {

// The IANA zone that stands for a zone of Windows ("W. Europe Standard Time", as Outlook and
// Exchange write it), after the territory-independent rows of CLDR's windowsZones; empty when there
// is none of that name. Names know no case.
std::string ianaNameOfWindowsZone(std::string_view windowsName);

}  // namespace orvane::ical
