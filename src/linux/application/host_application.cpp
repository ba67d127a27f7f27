#include "linux/application/host_application.h"

#include <utility>

namespace orvane::host {
namespace {

class HostApplication final : public NSApplication {
 public:
  explicit HostApplication(std::function<void()> quit) : quit_(std::move(quit)) {}

  void setActivationPolicy(NSApplicationActivationPolicy) override {}
  void activate(bool) override {}
  void terminate() override { quit_(); }

 private:
  const std::function<void()> quit_;
};

}  // namespace

std::unique_ptr<NSApplication> makeApplication(std::function<void()> quit) {
  return std::make_unique<HostApplication>(std::move(quit));
}

}  // namespace orvane::host
