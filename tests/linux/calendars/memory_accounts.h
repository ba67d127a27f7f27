#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "foundation/main_actor.h"
#include "linux/accounts/account_service.h"

namespace orvane::host {

// The accounts of a desktop in memory, with a service that can be slow, break, and go. Shared with
// the test, since the provider owns what it is given.
struct AccountWorld {
  explicit AccountWorld(MainActor& actor) : actor(actor) {}

  MainActor& actor;
  std::vector<AccountCalendar> calendars;
  std::map<std::string, std::string> texts;  // of calendars, by source

  // How the service is to behave from now on.
  bool hangs = false;
  bool fails = false;
  std::set<std::string> hanging;         // sources that do not answer …
  std::map<std::string, Duration> slow;  // … that take their time …
  std::set<std::string> failing;         // … that answer with an error …
  std::set<std::string> closed;          // … that cannot even be opened …
  std::set<std::string> stuck;           // … whose opening is never answered …
  std::set<std::string> signedOut;
  Duration pace{0};  // questions about calendars are answered one by one, each for so long

  // What was done to it.
  int directories = 0;
  std::vector<std::string> opened;
  std::vector<std::string> fetched;
  std::vector<AccountSpan> spans;
  int openClients = 0;
  bool isStopped = false;

  // The ways back to the program.
  std::function<void(AccountService*)> found;
  std::optional<AccountSigns> directorySigns;
  std::map<std::string, AccountSigns> clientSigns;

  void add(const std::string& source, const std::string& title, EKEntityType type,
           const std::string& text) {
    calendars.push_back({source, title, type});
    texts[source] = text;
  }
  void remove(const std::string& source) {
    std::erase_if(calendars, [&](const auto& calendar) { return calendar.source == source; });
  }
  // Changes what a calendar holds and says so.
  void change(const std::string& source, const std::string& text) {
    texts[source] = text;
    clientSigns.at(source).changed();
  }

  // Answers in a later turn, unless the question is given up before.
  Subscription answer(std::function<void()> work) {
    return ask(std::move(work), [this](auto answering) { actor.post(std::move(answering)); });
  }
  // The same of a question about a calendar.
  Subscription answerInTurn(std::function<void()> work) {
    if (pace == Duration::zero()) return answer(std::move(work));
    return ask(std::move(work), [this](auto answering) {
      queue.push_back(std::move(answering));
      if (!busy) answerNext();
    });
  }
  static Subscription unanswered() {
    return Subscription([] {});
  }

 private:
  static Subscription ask(std::function<void()> work,
                          const std::function<void(std::function<void()>)>& schedule) {
    // Whoever asks owns what the answer needs, this world too.
    auto question = std::make_shared<std::function<void()>>(std::move(work));
    schedule([asked = std::weak_ptr(question)] {
      if (const auto wanted = asked.lock()) (*wanted)();
    });
    return Subscription([question = std::move(question)]() mutable { question.reset(); });
  }
  void answerNext() {
    busy = actor.after(pace, [this] {
      busy.cancel();
      const auto work = std::move(queue.front());
      queue.pop_front();
      if (!queue.empty()) answerNext();
      work();
    });
  }

  std::deque<std::function<void()>> queue;
  Subscription busy;
};

class MemoryClient final : public AccountClient {
 public:
  MemoryClient(std::shared_ptr<AccountWorld> world, std::string source)
      : world_(std::move(world)), source_(std::move(source)) {
    ++world_->openClients;
  }
  ~MemoryClient() override {
    --world_->openClients;
    world_->clientSigns.erase(source_);
  }
  Subscription fetch(const AccountSpan& span,
                     std::function<void(std::optional<AccountItems>)> fetched) override {
    world_->fetched.push_back(source_);
    world_->spans.push_back(span);
    if (world_->hanging.contains(source_)) return AccountWorld::unanswered();
    const auto answer = [this, fetched = std::move(fetched)] {
      if (world_->failing.contains(source_)) return fetched(std::nullopt);
      fetched(AccountItems{world_->texts[source_], world_->signedOut.contains(source_)});
    };
    const auto delay = world_->slow.find(source_);
    if (delay != world_->slow.end()) return world_->actor.after(delay->second, answer);
    return world_->answerInTurn(answer);
  }

 private:
  const std::shared_ptr<AccountWorld> world_;
  const std::string source_;
};

class MemoryDirectory final : public AccountDirectory {
 public:
  explicit MemoryDirectory(std::shared_ptr<AccountWorld> world) : world_(std::move(world)) {
    ++world_->directories;
  }
  ~MemoryDirectory() override {
    --world_->directories;
    world_->directorySigns.reset();
  }
  [[nodiscard]] std::vector<AccountCalendar> calendars() const override {
    return world_->calendars;
  }
  Subscription open(const AccountCalendar& calendar, AccountSigns signs,
                    std::function<void(std::unique_ptr<AccountClient>)> opened) override {
    world_->opened.push_back(calendar.source);
    if (world_->stuck.contains(calendar.source)) return AccountWorld::unanswered();
    return world_->answerInTurn([world = world_, source = calendar.source, signs = std::move(signs),
                                 opened = std::move(opened)] {
      if (world->closed.contains(source)) return opened(nullptr);
      world->clientSigns[source] = signs;
      opened(std::make_unique<MemoryClient>(world, source));
    });
  }

 private:
  const std::shared_ptr<AccountWorld> world_;
};

class MemoryService final : public AccountService {
 public:
  explicit MemoryService(std::shared_ptr<AccountWorld> world) : world_(std::move(world)) {}
  Subscription open(AccountSigns signs,
                    std::function<void(std::unique_ptr<AccountDirectory>)> opened) override {
    if (world_->hangs) return AccountWorld::unanswered();
    return world_->answer([world = world_, signs = std::move(signs), opened = std::move(opened)] {
      if (world->fails) return opened(nullptr);
      world->directorySigns = signs;
      opened(std::make_unique<MemoryDirectory>(world));
    });
  }

 private:
  const std::shared_ptr<AccountWorld> world_;
};

class MemoryAccounts final : public Accounts {
 public:
  explicit MemoryAccounts(std::shared_ptr<AccountWorld> world)
      : world_(std::move(world)), service_(world_) {}

  void watch(std::function<void(AccountService*)> found) override {
    world_->found = [this, found = std::move(found)](AccountService* service) {
      found(service == nullptr ? nullptr : &service_);
    };
  }
  void stop() override {
    world_->isStopped = true;
    world_->found = nullptr;
  }
  [[nodiscard]] AccountService* service() { return &service_; }

 private:
  const std::shared_ptr<AccountWorld> world_;
  MemoryService service_;
};

}  // namespace orvane::host
