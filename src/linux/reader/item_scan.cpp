#include "linux/reader/item_scan.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "linux/reader/content_lines.h"
#include "linux/reader/date_values.h"

namespace orvane::ical {

namespace {

// No zone is further from UTC, and an item that gives no end lasts at most a day.
constexpr std::int64_t kMargin = 3 * kSecondsPerDay;

class Scanner {
 public:
  explicit Scanner(const Window& window) : window_(window) {}

  ItemScan scan(std::string_view text) {
    ContentLines lines(text);
    int depth = 0;
    while (lines.next()) {
      const ContentLine line = splitContentLine(lines.line());
      if (equalsIgnoringCase(line.name, "BEGIN")) ++depth;
      if (equalsIgnoringCase(line.name, "END")) --depth;
      if (depth == 1) readLine(line);
    }
    result_.mayOverlap = mayOverlap();
    return std::move(result_);
  }

 private:
  void readLine(const ContentLine& line) {
    const auto is = [&line](std::string_view name) { return equalsIgnoringCase(line.name, name); };
    switch (line.name.empty() ? '\0' : line.name.front() | 0x20) {
      case 'u':
        if (is("UID")) result_.uid = std::string(line.value);
        break;
      case 'd':
        if (is("DTSTART")) start_ = parseDateValue(line.value);
        if (is("DTEND")) end_ = parseDateValue(line.value);
        if (is("DURATION")) hasDuration_ = true;
        break;
      case 'r':
        if (is("RRULE") || is("RDATE")) result_.recurs = true;
        if (is("RECURRENCE-ID")) result_.isOverride = true;
        break;
      case 's':
        if (is("STATUS")) readStatus(line.value);
        break;
      case 'c':
        if (is("COMPLETED") && parseDateValue(line.value)) result_.isSettled = true;
        break;
      default:
        break;
    }
  }

  void readStatus(std::string_view value) {
    if (equalsIgnoringCase(value, "COMPLETED") || equalsIgnoringCase(value, "CANCELLED")) {
      result_.isSettled = true;
    }
  }

  [[nodiscard]] bool mayOverlap() const {
    if (!start_ || hasDuration_) return true;
    const WallTime end = end_ ? std::max(end_->time, start_->time) : start_->time;
    return start_->time < window_.end + kMargin && end > window_.start - kMargin;
  }

  const Window& window_;
  ItemScan result_;
  std::optional<DateValue> start_, end_;
  bool hasDuration_ = false;
};

}  // namespace

ItemScan scanItem(std::string_view text, const Window& window) {
  return Scanner(window).scan(text);
}

}  // namespace orvane::ical
