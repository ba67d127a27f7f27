#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orvane::ical {

// Yields the content lines of iCalendar text (RFC 5545 section 3.1) one by one, unfolded. Lines may
// end in CR LF, LF or CR; empty ones are passed over. It works on bytes, because a fold may cut a
// character in two. Each byte is looked at a bounded number of times, however long a line is.
class ContentLines {
 public:
  // What of a line is beyond this is dropped.
  static constexpr std::size_t kLongestLine = std::size_t{1} << 20;

  explicit ContentLines(std::string_view text) : text_(text) {}

  // False at the end.
  bool next();
  // Valid until the next call of next().
  [[nodiscard]] std::string_view line() const { return line_; }
  // Where the line begins in the text, and where the one behind it does.
  [[nodiscard]] std::size_t begin() const { return begin_; }
  [[nodiscard]] std::size_t end() const { return position_; }

 private:
  std::string_view takePhysicalLine();

  std::string_view text_;
  std::size_t position_ = 0;
  std::size_t begin_ = 0;
  std::size_t nextLineFeed_ = 0;  // known place of the next LF, if not before position_
  std::string unfolded_;
  std::string_view line_;
};

// "DTSTART;TZID=Europe/Berlin:20261120T094100" in its parts; views of the line.
struct ContentLine {
  std::string_view name;
  std::string_view parameters;  // with its leading semicolon, or empty
  std::string_view value;
};

ContentLine splitContentLine(std::string_view line);

// Names of properties, components and parameters know no case.
bool equalsIgnoringCase(std::string_view a, std::string_view b);

}  // namespace orvane::ical
