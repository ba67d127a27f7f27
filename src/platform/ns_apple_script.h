#pragma once

#include <memory>
#include <optional>
#include <string>

namespace orvane {

// A script that was understood.
class NSAppleScript {
 public:
  virtual ~NSAppleScript() = default;

  // Runs it, and answers what went wrong, if anything did.
  virtual std::optional<std::string> executeAndReturnError() = 0;
};

// Whoever carries out scripts. Main thread only.
class AppleScripts {
 public:
  virtual ~AppleScripts() = default;

  // Null where the source is not understood.
  [[nodiscard]] virtual std::unique_ptr<NSAppleScript> makeScript(const std::string& source) = 0;
};

}  // namespace orvane
