#pragma once

#include <string>
#include <vector>

#include "platform/ns_application.h"

namespace orvane::fakes {

// A program that exists in memory alone and tells a log what is asked of it.
class MemoryApplication final : public NSApplication {
 public:
  explicit MemoryApplication(std::vector<std::string>& log) : log_(log) {}

  void setActivationPolicy(NSApplicationActivationPolicy policy) override {
    log_.push_back("policy " + std::to_string(static_cast<int>(policy)));
  }
  void activate(bool ignoringOtherApps) override {
    log_.emplace_back(ignoringOtherApps ? "activate, ignoring others" : "activate");
  }
  void terminate() override { log_.emplace_back("terminate"); }

 private:
  std::vector<std::string>& log_;
};

}  // namespace orvane::fakes
