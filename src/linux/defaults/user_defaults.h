// defaults/ keeps the user's preferences in one JSON file.
#pragma once

#include <filesystem>
#include <memory>

#include "foundation/main_actor.h"
#include "linux/files/base_directory.h"
#include "platform/user_defaults.h"

namespace orvane::host {

// User defaults over a file: read when made, written on a worker within a quarter of a second of a
// change, at flush() and at destruction. A file that cannot be used is kept under another name
// beside its place. Keys that nobody asks for stay in the file. Main thread only.
class FileUserDefaults : public UserDefaults {
 public:
  // Writes what is not on the disk yet, and returns when it is or cannot be.
  virtual void flush() = 0;
};

// An empty path keeps the values in memory only. `actor` must outlive the defaults.
[[nodiscard]] std::unique_ptr<FileUserDefaults> makeUserDefaults(std::filesystem::path path,
                                                                 MainActor& actor);

// Where the defaults of this user lie: orvane/defaults.json in $XDG_CONFIG_HOME, which counts only
// where it is absolute, else in ~/.config. Empty for a user without a home.
[[nodiscard]] std::filesystem::path userDefaultsPath(const Environment& environment);

}  // namespace orvane::host
