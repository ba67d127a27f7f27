#include "linux/evolution/evolution_accounts.h"

#include <dlfcn.h>

#include <chrono>
#include <optional>
#include <utility>

#include "linux/evolution/module.h"
#include "linux/evolution/service_watch.h"

namespace orvane::host {
namespace {

// Loading takes a processor's time, which belongs to the first frame first.
constexpr std::chrono::milliseconds afterTheFirstFrame{200};

// Blocks. Null: there is no module, it is another build's, or the service's library is not
// installed. What was loaded stays, since the library's types cannot be taken back.
ModuleEntry* loadModule(const std::string& path) {
  void* const module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  return module == nullptr ? nullptr : reinterpret_cast<ModuleEntry*>(dlsym(module, moduleEntry));
}

class EvolutionAccounts final : public Accounts {
 public:
  EvolutionAccounts(EvolutionOptions options, MainActor& actor)
      : options_(std::move(options)), actor_(actor) {}

  void watch(std::function<void(AccountService*)> found) override {
    found_ = std::move(found);
    if (options_.bus == nullptr) {
      absence_ = actor_.after(Duration::zero(), [this] { found_(nullptr); });
    } else {
      watch_.emplace(options_.bus, [this](bool isThere) { note(isThere); });
    }
  }

  void stop() override {
    absence_.cancel();
    pause_.cancel();
    watch_.reset();
    alive_.reset();
  }

 private:
  // Those who have found the service keep it: it may come back, and notices by itself that it went.
  void note(bool isThere) {
    if (isLoading_ || (service_ && !isThere)) return;
    if (service_ || !isThere) return found_(service_.get());
    isLoading_ = true;
    pause_ = actor_.after(afterTheFirstFrame, [this] { load(); });
  }

  void load() {
    const std::weak_ptr<int> alive = alive_;
    actor_.runOnWorker([this, alive, path = options_.modulePath, &actor = actor_] {
      auto* const entry = loadModule(path);
      actor.post([this, alive, entry] {
        if (!alive.expired()) take(entry);
      });
    });
  }

  void take(ModuleEntry* entry) {
    isLoading_ = false;
    if (entry != nullptr) service_.reset(entry(moduleBuild, &actor_));
    found_(service_.get());
  }

  const EvolutionOptions options_;
  MainActor& actor_;
  std::function<void(AccountService*)> found_;
  std::optional<ServiceWatch> watch_;
  Subscription absence_;
  Subscription pause_;
  bool isLoading_ = false;
  std::unique_ptr<AccountService> service_;
  // Main thread: gone once it was stopped.
  std::shared_ptr<int> alive_ = std::make_shared<int>(0);
};

}  // namespace

std::unique_ptr<Accounts> makeEvolutionAccounts(EvolutionOptions options, MainActor& actor) {
  return std::make_unique<EvolutionAccounts>(std::move(options), actor);
}

}  // namespace orvane::host
