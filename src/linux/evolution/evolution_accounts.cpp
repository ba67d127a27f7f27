#include "linux/evolution/evolution_accounts.h"

#include <dlfcn.h>

#include <chrono>
#include <iostream>
#include <optional>
#include <string>
#include <utility>

#include "linux/evolution/module.h"
#include "linux/evolution/service_watch.h"

namespace orvane::host {
namespace {

// Loading takes a processor's time, which belongs to the first frame first.
constexpr std::chrono::milliseconds afterTheFirstFrame{200};
// A service that ends as soon as it has begun is not back: who asked it again at once would make
// the bus start it for ever.
constexpr std::chrono::seconds steady{1};

// Without an entry there is no module, it is no module of ours, or the service's library is not
// installed: `failure` is what the system says about it.
struct LoadedModule {
  ModuleEntry* entry = nullptr;
  std::string failure;
};

// Blocks. What was loaded stays, since the library's types cannot be taken back.
LoadedModule loadModule(const std::string& path) {
  LoadedModule loaded;
  void* const module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  if (module) loaded.entry = reinterpret_cast<ModuleEntry*>(dlsym(module, moduleEntry));
  if (loaded.entry) return loaded;
  const char* const reason = dlerror();
  loaded.failure = reason ? reason : "no reason is known";
  return loaded;
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
      watch_.emplace(
          options_.bus, [this](bool isThere) { note(isThere); },
          [this](bool runs) { noteOwner(runs); });
    }
  }

  void stop() override {
    absence_.cancel();
    pause_.cancel();
    return_.cancel();
    watch_.reset();
    alive_.reset();
  }

 private:
  // Those who have found the service keep it: it may come back, and notices by itself that it went.
  void note(bool isThere) {
    if (isLoading_ || (service_ && !isThere)) return;
    return_.cancel();
    if (service_ || !isThere) return found_(service_.get());
    isLoading_ = true;
    pause_ = actor_.after(afterTheFirstFrame, [this] { load(); });
  }

  void noteOwner(bool runs) {
    return_.cancel();
    if (!service_ || !runs) return;
    return_ = actor_.after(steady, [this] {
      return_.cancel();
      found_(service_.get());
    });
  }

  void load() {
    const std::weak_ptr<int> alive = alive_;
    actor_.runOnWorker([this, alive, path = options_.modulePath, &actor = actor_] {
      const auto module = loadModule(path);
      actor.post([this, alive, module] {
        if (!alive.expired()) take(module);
      });
    });
  }

  void take(const LoadedModule& module) {
    isLoading_ = false;
    if (module.entry != nullptr) service_.reset(module.entry(moduleBuild, &actor_));
    if (!service_) tell(module.entry ? "it belongs to another version" : module.failure);
    found_(service_.get());
  }

  // The service may come and go; the reason stays.
  void tell(const std::string& reason) {
    if (std::exchange(hasTold_, true)) return;
    std::cerr << "orvane: The calendars of the desktop's accounts are left out, because what reads "
                 "them cannot be loaded: "
              << reason << '\n';
  }

  const EvolutionOptions options_;
  MainActor& actor_;
  std::function<void(AccountService*)> found_;
  std::optional<ServiceWatch> watch_;
  Subscription absence_;
  Subscription pause_;
  Subscription return_;
  bool isLoading_ = false;
  bool hasTold_ = false;
  std::unique_ptr<AccountService> service_;
  // Main thread: gone once it was stopped.
  std::shared_ptr<int> alive_ = std::make_shared<int>(0);
};

}  // namespace

std::unique_ptr<Accounts> makeEvolutionAccounts(EvolutionOptions options, MainActor& actor) {
  return std::make_unique<EvolutionAccounts>(std::move(options), actor);
}

}  // namespace orvane::host
