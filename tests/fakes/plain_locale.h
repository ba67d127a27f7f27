#pragma once

#include <algorithm>
#include <array>
#include <cctype>
#include <string>
#include <string_view>

#include "fakes/civil_time.h"
#include "platform/locale.h"

namespace orvane::fakes {

// English, ASCII, at a fixed distance from UTC.
class PlainLocale final : public Locale {
 public:
  explicit PlainLocale(double offsetFromUTC = 0) : offset_(offsetFromUTC) {}

  [[nodiscard]] std::string weekdayWide(Date date) const override {
    static constexpr std::array names = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                         "Thursday", "Friday", "Saturday"};
    return names.at(static_cast<std::size_t>(weekdayOf(date.secondsSince1970 + offset_)));
  }
  [[nodiscard]] std::string dateLong(Date date) const override {
    const CivilTime time = local(date);
    return monthName(time) + " " + std::to_string(time.day) + ", " + std::to_string(time.year);
  }
  [[nodiscard]] std::string dateAbbreviatedTimeShortened(Date date) const override {
    const CivilTime time = local(date);
    return monthName(time).substr(0, 3) + " " + std::to_string(time.day) + ", " +
           std::to_string(time.year) + " at " + timeShortened(date);
  }
  [[nodiscard]] std::string timeShortened(Date date) const override {
    const CivilTime time = local(date);
    const int hour = time.hour % 12 == 0 ? 12 : time.hour % 12;
    return std::to_string(hour) + (time.minute < 10 ? ":0" : ":") + std::to_string(time.minute) +
           (time.hour < 12 ? " AM" : " PM");
  }
  [[nodiscard]] std::string integer(std::int64_t number) const override {
    std::string text = std::to_string(number);
    const std::size_t first = number < 0 ? 1 : 0;
    for (std::size_t end = text.size(); end > first + 3;) text.insert(end -= 3, ",");
    return text;
  }
  [[nodiscard]] std::string lowercased(std::string_view text) const override {
    return mapped(text, [](unsigned char c) { return std::tolower(c); });
  }
  [[nodiscard]] std::string uppercased(std::string_view text) const override {
    return mapped(text, [](unsigned char c) { return std::toupper(c); });
  }
  [[nodiscard]] int localizedCaseInsensitiveCompare(std::string_view a,
                                                    std::string_view b) const override {
    return lowercased(a).compare(lowercased(b));
  }
  [[nodiscard]] bool isRightToLeft() const override { return false; }

 private:
  [[nodiscard]] CivilTime local(Date date) const {
    return civilTimeOf(date.secondsSince1970 + offset_);
  }
  static std::string monthName(const CivilTime& time) {
    static constexpr std::array names = {"January",   "February", "March",    "April",
                                         "May",       "June",     "July",     "August",
                                         "September", "October",  "November", "December"};
    return names.at(static_cast<std::size_t>(time.month - 1));
  }
  template <class Map>
  static std::string mapped(std::string_view text, Map map) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [&](char c) { return static_cast<char>(map(static_cast<unsigned char>(c))); });
    return result;
  }

  double offset_;
};

}  // namespace orvane::fakes
