#pragma once

#include <string>
#include <vector>

#include "linux/wire/reader_messages.h"

namespace orvane::ical {

// What came of running the real program once.
struct ReaderRun {
  std::vector<wire::FileAnswer> answers;
  int exitStatus = -1;  // -1 when a signal ended it
  int signal = 0;
  bool isStreamBroken = false;
  long peakKilobytes = 0;
  double processorSeconds = 0;
};

// Starts the reader, writes `input` to it and waits for its end; kills it after a minute.
ReaderRun runReader(const std::string& input);
ReaderRun runReader(const std::vector<std::string>& paths);

// The week of the fixtures, in Berlin.
wire::ReadRequest requestFor(const std::vector<std::string>& paths);

// /proc/PID/limits of a reader that waits for its request.
std::string limitsOfWaitingReader();

}  // namespace orvane::ical
