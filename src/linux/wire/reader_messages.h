// linux/wire/ is what the program and its helper processes say to each other: plain records and
// their bytes, standard C++ only. It is the one folder of linux/ that its neighbours share.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/date_components.h"

namespace orvane::wire {

// Seconds since 1970 throughout.

// What the reader is to do with its standard input's paths.
struct ReadRequest {
  double windowStart = 0;  // occurrences that overlap [windowStart, windowEnd) are wanted
  double windowEnd = 0;
  std::string localTimeZone;       // IANA name; floating and all-day times are read in it
  std::vector<std::string> paths;  // of files, in the order in which answers come
  // What is looked at now; the rest of the window saves reading again. Of an item with more
  // occurrences than are shown of one, only those that overlap [shownStart, shownEnd) are wanted.
  double shownStart = 0;
  double shownEnd = 0;
  friend bool operator==(const ReadRequest&, const ReadRequest&) = default;
};

struct EventOccurrence {
  std::string uid;
  // Tells the occurrences of one item apart and stays the same when one of them is moved: the
  // original start; empty for an item that does not recur.
  std::string recurrenceId;
  std::optional<std::string> title;
  double start = 0;
  double end = 0;
  bool isAllDay = false;
  friend bool operator==(const EventOccurrence&, const EventOccurrence&) = default;
};

// A task that is neither completed nor cancelled.
struct OpenTask {
  std::string uid;
  std::optional<std::string> title;
  std::optional<DateComponents> due;
  std::int64_t priority = 0;
  friend bool operator==(const OpenTask&, const OpenTask&) = default;
};

enum class ReadOutcome : std::uint8_t {
  good = 0,         // read to its end; items in it that could not be understood were left out
  unreadable = 1,   // could not be opened or read
  notCalendar = 2,  // holds no iCalendar object
  tooLarge = 3,     // over the limits of size
};

struct FileAnswer {
  std::string path;
  ReadOutcome outcome = ReadOutcome::good;
  std::optional<std::string> calendarName;  // X-WR-CALNAME
  bool holdsEvents = false;                 // any VEVENT, also one outside the window or cancelled
  bool holdsTasks = false;                  // any VTODO, also a completed one
  std::vector<EventOccurrence> events;      // that overlap the window
  std::vector<OpenTask> tasks;
  bool isForShownOnly = false;  // some item was cut down to the shown part of the window
  friend bool operator==(const FileAnswer&, const FileAnswer&) = default;
};

// Bytes are the reader's standard input and output. A message is framed by its length. Decoding
// takes any bytes: what is not a message as encode() makes them, within the limits, is nothing.
inline constexpr std::size_t kMostMessageBytes = std::size_t{128} << 20;  // without its frame

std::string encode(const ReadRequest& request);
std::optional<ReadRequest> decodeRequest(const std::string& bytes);
std::string encode(const FileAnswer& answer);

// Cuts the answers out of a stream of bytes that arrives in pieces.
class AnswerStream {
 public:
  void append(const char* bytes, std::size_t count);
  // The next whole answer, nothing while it is incomplete or after the stream broke.
  std::optional<FileAnswer> next();
  // Something arrived that is no answer; nothing more can be read.
  [[nodiscard]] bool isBroken() const { return broken_; }

 private:
  std::string buffer_;
  std::size_t consumed_ = 0;
  bool broken_ = false;
};

}  // namespace orvane::wire
