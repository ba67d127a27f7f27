// The module of the desktop's accounts: all that is linked to the service's library.

#include "linux/evolution/module.h"

#include <cstring>
#include <utility>

#include "linux/evolution/call_threads.h"
#include "linux/evolution/evolution_directory.h"

namespace orvane::host {
namespace {

class EvolutionService final : public AccountService {
 public:
  explicit EvolutionService(MainActor& actor) : threads_(std::make_shared<CallThreads>(actor)) {}
  ~EvolutionService() override { threads_->close(); }
  EvolutionService(const EvolutionService&) = delete;
  EvolutionService& operator=(const EvolutionService&) = delete;

  Subscription open(AccountSigns signs,
                    std::function<void(std::unique_ptr<AccountDirectory>)> opened) override {
    return openDirectory(threads_, std::move(signs), std::move(opened));
  }

 private:
  const std::shared_ptr<CallThreads> threads_;
};

}  // namespace
}  // namespace orvane::host

extern "C" __attribute__((visibility("default"))) orvane::host::AccountService* orvaneEvolution(
    const char* build, orvane::MainActor* actor) {
  if (std::strcmp(build, orvane::host::moduleBuild) != 0) return nullptr;
  return new orvane::host::EvolutionService(*actor);
}
