#pragma once

namespace orvane {

enum class SMAppServiceStatus : int {
  notRegistered = 0,
  enabled = 1,
  requiresApproval = 2,
  notFound = 3
};

// Launch at login of the main application. Main thread only.
class SMAppService {
 public:
  virtual ~SMAppService() = default;

  [[nodiscard]] virtual SMAppServiceStatus status() const = 0;
  // Both answer whether they succeeded; after a failure status() tells what is true.
  [[nodiscard]] virtual bool registerService() = 0;
  [[nodiscard]] virtual bool unregisterService() = 0;
};

}  // namespace orvane
