#include "calendar_folders.h"

#include <stdlib.h>

#include <array>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <stdexcept>

namespace orvane::bench {
namespace {

std::string basicTime(double secondsSince1970) {
  const auto time = static_cast<std::time_t>(secondsSince1970);
  std::tm fields{};
  gmtime_r(&time, &fields);
  std::array<char, 32> text;
  return {text.data(), std::strftime(text.data(), text.size(), "%Y%m%dT%H%M%S", &fields)};
}

// Spread over the past two years and the coming month.
double startOf(std::size_t number) {
  constexpr double kDay = 86400;
  return CalendarFolders::now.secondsSince1970 +
         (static_cast<double>(number * 37 % 760) - 730) * kDay;
}

std::string eventText(std::size_t number, const std::string& title) {
  const double start = startOf(number);
  std::string text = "BEGIN:VEVENT\r\nDTSTAMP:20260101T000000Z\r\nUID:" + std::to_string(number) +
                     "@calendars.example\r\nSUMMARY:" + title +
                     "\r\nDTSTART;TZID=Europe/Berlin:" + basicTime(start) +
                     "\r\nDTEND;TZID=Europe/Berlin:" + basicTime(start + 3600) + "\r\n";
  if (number % 10 == 1) text += "RRULE:FREQ=WEEKLY;BYDAY=MO,WE\r\n";
  return text +
         "LOCATION:Room 4\r\nDESCRIPTION:Please read the notes of the last meeting before this "
         "one.\r\nBEGIN:VALARM\r\nACTION:DISPLAY\r\nDESCRIPTION:Soon\r\nTRIGGER:-PT15M\r\n"
         "END:VALARM\r\nEND:VEVENT\r\n";
}

std::string taskText(std::size_t number, const std::string& title) {
  return "BEGIN:VTODO\r\nDTSTAMP:20260101T000000Z\r\nUID:" + std::to_string(number) +
         "@calendars.example\r\nSUMMARY:" + title +
         "\r\nDUE;TZID=Europe/Berlin:" + basicTime(startOf(number)) + "\r\nPRIORITY:5\r\n" +
         (number % 20 == 0 ? "STATUS:COMPLETED\r\n" : "STATUS:NEEDS-ACTION\r\n") + "END:VTODO\r\n";
}

}  // namespace

CalendarFolders::CalendarFolders() {
  std::string pattern = (std::filesystem::temp_directory_path() / "orvane-bench-XXXXXX").string();
  if (!mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder");
  root_ = pattern;
  for (std::size_t folder = 0; folder < folders; ++folder) {
    std::filesystem::create_directory(root_ / std::to_string(folder));
    for (std::size_t item = 0; item < itemsPerFolder; ++item) {
      write(folder, item, "Meeting number " + std::to_string(item));
    }
  }
}

CalendarFolders::~CalendarFolders() {
  std::error_code error;
  std::filesystem::remove_all(root_, error);
}

void CalendarFolders::changeOne() {
  write(7, 7, "Changed for the " + std::to_string(++changes_) + "th time");
}

void CalendarFolders::write(std::size_t folder, std::size_t item, const std::string& title) {
  const auto number = folder * itemsPerFolder + item;
  const auto place = root_ / std::to_string(folder) / (std::to_string(item) + ".ics");
  auto temporary = place;
  temporary += ".part";
  std::ofstream(temporary, std::ios::binary)
      << "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Example//Calendars//EN\r\n"
      << (number % 10 == 0 ? taskText(number, title) : eventText(number, title))
      << "END:VCALENDAR\r\n";
  std::filesystem::rename(temporary, place);
}

}  // namespace orvane::bench
