#pragma once

#include <string>

#include "snapshot_options.h"

namespace orvane::tools {

// How a run ended: the status for the system, and a line for a person unless all went well.
struct Outcome {
  int status = 0;
  std::string message;
};

inline constexpr int wrongArgument = 2;

// Runs the pipeline once. `readerPath` is the program that reads iCalendar files.
Outcome takeSnapshot(const SnapshotOptions& options, const std::string& readerPath);

}  // namespace orvane::tools
