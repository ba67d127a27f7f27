// A module of the accounts without a library behind it: it serves, and nobody ever answers.

#include <cstring>

#include "linux/evolution/module.h"

namespace {

using namespace orvane;

class SilentService final : public host::AccountService {
 public:
  Subscription open(host::AccountSigns,
                    std::function<void(std::unique_ptr<host::AccountDirectory>)>) override {
    return {};
  }
};

}  // namespace

extern "C" __attribute__((visibility("default"))) host::AccountService* orvaneEvolution(
    const char* build, MainActor*) {
  return std::strcmp(build, host::moduleBuild) == 0 ? new SilentService : nullptr;
}
