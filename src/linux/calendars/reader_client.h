#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "linux/wire/reader_messages.h"

namespace orvane::host {

// What is to be read, in any order. The fields are those of wire::ReadRequest.
struct ReadJob {
  double windowStart = 0;
  double windowEnd = 0;
  std::string localTimeZone;
  std::vector<std::string> paths;
  double shownStart = 0;
  double shownEnd = 0;
  // A file that costs the reader too much time, or its life, is left unread and not tried alone.
  bool leavesSuspects = false;
};

struct ReaderLimits {
  std::size_t filesPerProcess = 500;
  std::size_t processes = 2;
  // How long one file may keep the reader busy: one among others, before it is set aside, and one
  // in a process of its own, before it is given up.
  std::chrono::milliseconds perFile{1000};
  std::chrono::milliseconds perLoneFile{15000};
};

enum class ReadPace {
  goOn,
  windUp,  // finish the files at hand, begin no others
  hurry,   // the same, and leave those that take their time
  stop,    // drop everything at once
};

// Has files read by the reader program, a number of them per process. A file at which the reader
// dies, hangs or talks nonsense is tried once more in a process of its own; if that ends no better
// it costs that one file. Used by one thread at a time.
class ReaderClient {
 public:
  // The answer for the path of that index; null when reading it cost the reader its life.
  using Sink = std::function<void(std::size_t index, wire::FileAnswer* answer)>;
  using Pace = std::function<ReadPace()>;

  explicit ReaderClient(std::string program, ReaderLimits limits = {})
      : program_(std::move(program)), limits_(limits) {}

  struct Report {
    // Left over because of the pace, or of a failure, or as suspects.
    std::vector<std::size_t> unread;
    bool programFailed = false;  // it cannot be started, or dies whatever it is given
  };
  // Blocks until everything is read or the pace ends it.
  Report read(const ReadJob& job, const Sink& sink, const Pace& pace) const;

 private:
  std::string program_;
  ReaderLimits limits_;
};

}  // namespace orvane::host
