#pragma once

#include <string>
#include <vector>

#include "platform/sm_app_service.h"

namespace orvane::fakes {

// A registration at login that may be told to refuse.
class MemoryAppService final : public SMAppService {
 public:
  [[nodiscard]] SMAppServiceStatus status() const override { return current; }
  [[nodiscard]] bool registerService() override {
    calls.emplace_back("register");
    return attempt(SMAppServiceStatus::enabled);
  }
  [[nodiscard]] bool unregisterService() override {
    calls.emplace_back("unregister");
    return attempt(SMAppServiceStatus::notRegistered);
  }

  SMAppServiceStatus current = SMAppServiceStatus::notRegistered;
  bool refuses = false;
  std::vector<std::string> calls;

 private:
  bool attempt(SMAppServiceStatus wanted) {
    if (refuses) return false;
    current = wanted;
    return true;
  }
};

}  // namespace orvane::fakes
