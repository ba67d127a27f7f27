#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/ns_apple_script.h"

namespace orvane::fakes {

// Keeps the scripts that were run, and may be told to understand none, or to fail at running them.
class MemoryAppleScripts final : public AppleScripts {
 public:
  explicit MemoryAppleScripts(std::vector<std::string>& log) : log_(log) {}

  [[nodiscard]] std::unique_ptr<NSAppleScript> makeScript(const std::string& source) override {
    if (understandsNothing) return nullptr;
    return std::make_unique<Script>(*this, source);
  }

  std::vector<std::string> run;
  bool understandsNothing = false;
  bool fails = false;

 private:
  class Script final : public NSAppleScript {
   public:
    Script(MemoryAppleScripts& owner, std::string source)
        : owner_(owner), source_(std::move(source)) {}
    std::optional<std::string> executeAndReturnError() override {
      owner_.run.push_back(source_);
      owner_.log_.emplace_back("script");
      return owner_.fails ? std::optional<std::string>("refused") : std::nullopt;
    }

   private:
    MemoryAppleScripts& owner_;
    std::string source_;
  };

  std::vector<std::string>& log_;
};

}  // namespace orvane::fakes
