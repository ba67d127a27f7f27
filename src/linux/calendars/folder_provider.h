#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "foundation/main_actor.h"
#include "linux/calendars/calendar_provider.h"

namespace orvane::host {

struct FolderOptions {
  std::vector<std::string> roots;  // absolute paths, which need not exist
  std::string readerPath;          // the program that reads iCalendar files
  // The IANA name of the current local time zone. Called on worker threads.
  std::function<std::string()> localTimeZone;

  // How often folders are looked at whose changes come without notice: those on network file
  // systems, and all when the system has no watches left.
  std::chrono::seconds slowRescan{45};
  // How long one file may keep the reader busy before it is given up.
  std::chrono::milliseconds perFile{15000};
  // How long a query waits for files to be read before it answers with what there is; the rest
  // follows in the background and is announced as a change.
  std::chrono::milliseconds patience{4000};
  // How long an item that has just become unreadable is taken to be one that is being written.
  std::chrono::milliseconds suspicion{2000};
  // inotify_add_watch(2) unless set.
  std::function<int(int descriptor, const char* path, std::uint32_t mask)> addWatch;
};

// Folders of iCalendar files as calendars. The actor must outlive the provider.
std::unique_ptr<CalendarProvider> makeFolderProvider(FolderOptions options, MainActor& actor);

}  // namespace orvane::host
