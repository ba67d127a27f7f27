#include "linux/reader/reading_session.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "linux/reader/calendar_text.h"
#include "linux/reader/file_bytes.h"

namespace orvane::ical {

namespace {

// Due dates may lie far ahead, whatever the window is.
constexpr int kLeastHorizonYear = 2060;

Window windowOf(double start, double end) {
  const auto bounded = [](double seconds) {
    return std::clamp(seconds, static_cast<double>(kFirstTime),
                      static_cast<double>(kBehindLastTime));
  };
  return {static_cast<Instant>(std::floor(bounded(start))),
          static_cast<Instant>(std::ceil(bounded(end)))};
}

std::optional<Window> shownPartOf(const wire::ReadRequest& request) {
  const double start = std::max(request.shownStart, request.windowStart);
  const double end = std::min(request.shownEnd, request.windowEnd);
  return start < end ? std::optional(windowOf(start, end)) : std::nullopt;
}

int horizonYearOf(const Window& window) {
  return std::max(kLeastHorizonYear, static_cast<int>(civilDate(dayOf(window.end)).year()) + 2);
}

wire::FileAnswer readFile(const std::string& path, const ReadingPlace& place) {
  FileBytes bytes = readRegularFile(path, kLargestFile);
  wire::FileAnswer answer;
  if (bytes.text) {
    answer = readCalendarText(std::move(*bytes.text), place);
  } else {
    answer.outcome = bytes.isTooLarge ? wire::ReadOutcome::tooLarge : wire::ReadOutcome::unreadable;
  }
  answer.path = path;
  return answer;
}

// Memory is limited; a file that needs more is too large for us.
wire::FileAnswer readFileWithinMemory(const std::string& path, const ReadingPlace& place) {
  try {
    return readFile(path, place);
  } catch (const std::bad_alloc&) {
    wire::FileAnswer answer;
    answer.path = path;
    answer.outcome = wire::ReadOutcome::tooLarge;
    return answer;
  }
}

}  // namespace

void readFiles(const wire::ReadRequest& request, const std::function<void()>& beforeFile,
               const std::function<bool(const wire::FileAnswer&)>& receive) {
  const Window window = windowOf(request.windowStart, request.windowEnd);
  SystemZones systemZones;
  DefinedZones definedZones(systemZones, horizonYearOf(window));
  const auto* local = systemZones.find(request.localTimeZone);
  const Zone utc;
  const TimeReading times(local ? local->zone : utc);
  const ReadingPlace place{times, window, systemZones, definedZones, shownPartOf(request)};
  for (const std::string& path : request.paths) {
    beforeFile();
    if (!receive(readFileWithinMemory(path, place))) return;
  }
}

}  // namespace orvane::ical
