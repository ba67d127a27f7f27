#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/test_paths.h"

namespace orvane::host {

// A scratch folder that is gone after the test, with its own copy of the plain reader beside the
// calendars: "reader" notes in "reads" what it was asked for.
class CalendarFolder {
 public:
  CalendarFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "orvane-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no scratch folder");
    base_ = std::filesystem::canonical(pattern);
    std::filesystem::create_directory(root());
    std::filesystem::create_symlink(plainReader, reader());
    // Tests that give up root must get in here.
    std::filesystem::permissions(base_, std::filesystem::perms(0777));
    std::filesystem::permissions(root(), std::filesystem::perms(0777));
  }
  CalendarFolder(const CalendarFolder&) = delete;
  ~CalendarFolder() {
    std::error_code ignored;
    for (std::filesystem::recursive_directory_iterator entry(base_, ignored), end; entry != end;
         entry.increment(ignored)) {
      if (entry->is_directory(ignored) && !entry->is_symlink(ignored)) {
        std::filesystem::permissions(entry->path(), std::filesystem::perms(0700), ignored);
      }
    }
    std::filesystem::remove_all(base_, ignored);
  }

  // Where the plain reader is; somewhere else for tests that run as somebody else.
  static inline std::string plainReader = builtProgram("tests/plain_reader");

  [[nodiscard]] std::filesystem::path base() const { return base_; }
  [[nodiscard]] std::filesystem::path root() const { return base_ / "calendars"; }
  [[nodiscard]] std::filesystem::path reader() const { return base_ / "reader"; }

  // Paths are below root(); folders on the way are made.
  void write(const std::string& path, const std::string& content) const {
    std::filesystem::create_directories((root() / path).parent_path());
    std::ofstream(root() / path) << content;
  }
  void calendar(const std::string& path, const std::string& lines) const {
    write(path, "BEGIN:VCALENDAR\n" + lines + "\n");
  }
  void replace(const std::string& path, const std::string& lines) const {
    const auto temporary = path + ".new";
    calendar(temporary, lines);
    std::filesystem::rename(root() / temporary, root() / path);
  }
  void makeFolder(const std::string& path) const {
    std::filesystem::create_directories(root() / path);
  }
  void remove(const std::string& path) const { std::filesystem::remove_all(root() / path); }

  // File names (of root(), relative) in the order in which they were read since last asked.
  std::vector<std::string> takeReads() const {
    std::vector<std::string> reads;
    std::ifstream log(base_ / "reads");
    for (std::string line; std::getline(log, line);) {
      reads.push_back(std::filesystem::path(line).lexically_relative(root()).string());
    }
    std::filesystem::remove(base_ / "reads");
    return reads;
  }

 private:
  std::filesystem::path base_;
};

}  // namespace orvane::host
