#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

#include "foundation/date.h"

namespace orvane::bench {

// Ten thousand items in twenty folders, in the shape in which synchronising tools leave them: one
// file each, events of past years and of this week, some repeating, and a tenth of them tasks.
// Gone with the object.
class CalendarFolders {
 public:
  static constexpr std::size_t folders = 20;
  static constexpr std::size_t itemsPerFolder = 500;
  static constexpr Date now{1795167660};  // 2026-11-20T09:41:00Z

  CalendarFolders();
  ~CalendarFolders();
  CalendarFolders(const CalendarFolders&) = delete;
  CalendarFolders& operator=(const CalendarFolders&) = delete;

  [[nodiscard]] std::string root() const { return root_.string(); }
  // Writes one item anew, with another title each time, and moves it into its place.
  void changeOne();

 private:
  void write(std::size_t folder, std::size_t item, const std::string& title);

  std::filesystem::path root_;
  int changes_ = 0;
};

}  // namespace orvane::bench
