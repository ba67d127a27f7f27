#pragma once

#include <chrono>
#include <cmath>
#include <cstdint>

namespace orvane::fakes {

// A local time spelled out, proleptic Gregorian.
struct CivilTime {
  int year = 1970;
  int month = 1;  // 1…12
  int day = 1;    // 1…31
  int hour = 0;
  int minute = 0;
  int second = 0;
};

// Seconds since 1970 as if the time were UTC; days beyond a month's end run on into the next.
inline double secondsOf(const CivilTime& time) {
  using namespace std::chrono;
  const sys_days first =
      year(time.year) / month(static_cast<unsigned>(time.month)) / std::chrono::day(1);
  const sys_days date = first + days(time.day - 1);
  return static_cast<double>(date.time_since_epoch().count()) * 86400.0 + time.hour * 3600.0 +
         time.minute * 60.0 + time.second;
}

inline CivilTime civilTimeOf(double secondsSince1970) {
  using namespace std::chrono;
  const auto whole = static_cast<std::int64_t>(std::floor(secondsSince1970));
  const auto date = floor<days>(sys_seconds(seconds(whole)));
  const auto inDay = static_cast<int>((sys_seconds(seconds(whole)) - date).count());
  const year_month_day ymd(date);
  return {static_cast<int>(ymd.year()),
          static_cast<int>(static_cast<unsigned>(ymd.month())),
          static_cast<int>(static_cast<unsigned>(ymd.day())),
          inDay / 3600,
          inDay / 60 % 60,
          inDay % 60};
}

// 0 is Sunday.
inline int weekdayOf(double secondsSince1970) {
  using namespace std::chrono;
  const auto whole = static_cast<std::int64_t>(std::floor(secondsSince1970));
  return static_cast<int>(weekday(floor<days>(sys_seconds(seconds(whole)))).c_encoding());
}

}  // namespace orvane::fakes
