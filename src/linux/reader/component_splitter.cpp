#include "linux/reader/component_splitter.h"

#include <utility>

#include "linux/reader/content_lines.h"

namespace orvane::ical {

namespace {

std::optional<ComponentKind> kindOf(std::string_view name) {
  if (equalsIgnoringCase(name, "VEVENT")) return ComponentKind::event;
  if (equalsIgnoringCase(name, "VTODO")) return ComponentKind::task;
  if (equalsIgnoringCase(name, "VTIMEZONE")) return ComponentKind::timeZone;
  return std::nullopt;
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  return text;
}

class Splitter {
 public:
  explicit Splitter(std::string_view text) : lines_(text) {}

  SplitText split() {
    while (lines_.next()) {
      const std::string_view line = lines_.line();
      // Nearly every line is neither of the two, which its first letter tells.
      const char first = line.front();
      if (first == 'B' || first == 'b' || first == 'E' || first == 'e' || isBetweenItems()) {
        readLine(splitContentLine(line));
      }
    }
    return std::move(result_);
  }

 private:
  [[nodiscard]] bool isBetweenItems() const { return !open_ && otherDepth_ == 0; }

  void readLine(const ContentLine& line) {
    if (equalsIgnoringCase(line.name, "BEGIN")) {
      begin(trimmed(line.value));
    } else if (equalsIgnoringCase(line.name, "END")) {
      end(trimmed(line.value));
    } else if (isBetweenItems() && equalsIgnoringCase(line.name, "X-WR-CALNAME")) {
      if (!result_.calendarName) result_.calendarName = std::string(line.value);
    }
  }

  void begin(std::string_view name) {
    if (equalsIgnoringCase(name, "VCALENDAR")) {
      startCalendar();
    } else if (const auto kind = kindOf(name)) {
      otherDepth_ = 0;
      open_ = ComponentSpan{*kind, lines_.begin(), 0, calendar_};
      result_.isCalendar = true;
      result_.holdsEvents = result_.holdsEvents || *kind == ComponentKind::event;
      result_.holdsTasks = result_.holdsTasks || *kind == ComponentKind::task;
    } else if (!open_) {
      ++otherDepth_;
    }
  }

  void startCalendar() {
    result_.isCalendar = true;
    ++calendar_;
    open_.reset();
    otherDepth_ = 0;
  }

  void end(std::string_view name) {
    if (equalsIgnoringCase(name, "VCALENDAR")) {
      open_.reset();
      otherDepth_ = 0;
    } else if (const auto kind = kindOf(name)) {
      if (open_ && open_->kind == *kind) {
        open_->end = lines_.end();
        result_.components.push_back(*open_);
      }
      open_.reset();
    } else if (!open_ && otherDepth_ > 0) {
      --otherDepth_;
    }
  }

  ContentLines lines_;
  SplitText result_;
  std::optional<ComponentSpan> open_;
  int calendar_ = 0;
  int otherDepth_ = 0;  // within components that are neither, such as a journal entry
};

}  // namespace

SplitText splitIntoComponents(std::string_view text) { return Splitter(text).split(); }

}  // namespace orvane::ical
