#pragma once

#include <optional>
#include <string>

#include "linux/reader/time_reading.h"
#include "linux/reader/window.h"
#include "linux/reader/zone_names.h"
#include "linux/wire/reader_messages.h"

namespace orvane::ical {

// What stays the same from file to file.
struct ReadingPlace {
  const TimeReading& times;
  Window window;
  SystemZones& systemZones;
  DefinedZones& definedZones;
  // The part of the window that an item with too many occurrences is cut down to; all of it when
  // this is not given.
  std::optional<Window> shown = std::nullopt;
};

// The answer to the bytes of one file; its path is left to the caller. Items that cannot be
// understood are left out. Time and memory are bounded whatever the bytes are: an item costs a
// bounded number of steps, all items together share a larger one, and an answer that would not fit
// a message loses what comes last.
wire::FileAnswer readCalendarText(std::string bytes, const ReadingPlace& place);

}  // namespace orvane::ical
