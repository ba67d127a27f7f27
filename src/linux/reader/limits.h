#pragma once

namespace orvane::ical {

// What this process may use at most, so that a file can cost a reader and nothing more. A limit
// that cannot be set leaves the others in force.
void limitProcess();

// Grants the processor time of one more file, beyond which the system ends the process.
void grantTimeOfAFile();

}  // namespace orvane::ical
