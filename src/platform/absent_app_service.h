#pragma once

#include "platform/sm_app_service.h"

namespace orvane {

// A host that starts no programs at login: never enabled, and every wish to change that fails.
class AbsentAppService final : public SMAppService {
 public:
  [[nodiscard]] SMAppServiceStatus status() const override { return SMAppServiceStatus::notFound; }
  [[nodiscard]] bool registerService() override { return false; }
  [[nodiscard]] bool unregisterService() override { return false; }
};

}  // namespace orvane
