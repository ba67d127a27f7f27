#include "linux/calendars/account_provider.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <utility>
#include <vector>

#include "linux/calendars/account_answers.h"
#include "linux/calendars/account_feed.h"
#include "linux/calendars/account_questions.h"
#include "linux/calendars/directory_connection.h"
#include "linux/calendars/library_answers.h"

namespace orvane::host {
namespace {

using std::chrono::milliseconds;

// Several calendars that change together are announced together. With the time that a burst takes
// this stays within a tenth of a second.
constexpr milliseconds announcementDelay{10};
// Whoever hears of a change waits for a second of quiet before asking. Many calendars that are read
// for the first time, one after the other, leave room for that.
constexpr milliseconds announcementDistance{2000};

constexpr const char* serviceFailure =
    "The calendars of the desktop's accounts cannot be read because their service does not answer.";
constexpr const char* readerFailure =
    "Calendars cannot be read because the program that reads them does not start.";

using Feeds = std::vector<std::unique_ptr<AccountFeed>>;

KindAccess accessTo(EKEntityType type, const Feeds& feeds) {
  KindAccess access = KindAccess::nothing;
  for (const auto& feed : feeds) {
    if (feed->calendar().type != type) continue;
    if (feed->outcome() == AccountFeed::Outcome::readable) return KindAccess::readable;
    if (feed->outcome() == AccountFeed::Outcome::refused) access = KindAccess::refused;
  }
  return access;
}

// The main thread's half: connections and what they brought. Queries are answered from
// AccountQuestions, which worker threads share.
class AccountProvider final : public CalendarProvider {
 public:
  AccountProvider(AccountOptions options, std::unique_ptr<Accounts> accounts, MainActor& actor)
      : options_(std::move(options)),
        actor_(actor),
        accounts_(std::move(accounts)),
        connection_(options_.patience, actor, {[this] { list(); }, [this] { loseDirectory(); }}) {
    if (options_.readText) return;
    reading_.emplace(options_.readerPath, actor);
    options_.readText = [this](std::string text, const ReadWindow& window, const ShownSpan& shown,
                               TextReading::Done done) {
      reading_->read(std::move(text), window, shown, std::move(done));
    };
  }

  void start(Callback ready, Callback changed) override {
    ready_ = std::move(ready);
    changed_ = std::move(changed);
    firstLimit_ = actor_.after(options_.firstPatience, [this] { becomeReady(); });
    actor_.runOnWorker([this, alive = isAlive_, zone = options_.localTimeZone, &actor = actor_] {
      actor.post([this, alive, name = zone()] {
        if (!alive.expired()) begin(name);
      });
    });
  }

  void stop() override {
    alive_.reset();
    for (auto* timer : {&firstLimit_, &announcement_, &rest_}) timer->cancel();
    feeds_.clear();
    connection_.stop();
    if (reading_) reading_->stop();
    if (accounts_) accounts_->stop();
    accounts_.reset();
  }

  [[nodiscard]] ProviderState state() const override { return questions_.answers()->state; }

  [[nodiscard]] std::vector<EKCalendar> calendars(EKEntityType type) override {
    const auto answers = tell();
    std::vector<EKCalendar> calendars;
    for (auto& content : contentsOf(*answers, type)) {
      calendars.push_back(std::move(content.calendar));
    }
    return calendars;
  }

  [[nodiscard]] std::vector<EKEvent> events(Date start, Date end,
                                            const CalendarSelection& selection) override {
    if (questions_.ask(start.secondsSince1970, end.secondsSince1970, options_.localTimeZone())) {
      postAlive([this] { lookAtEverything(); });
    }
    const auto answers = tell();
    return eventsIn(contentsOf(*answers, EKEntityType::event), start, end, selection);
  }

  [[nodiscard]] std::vector<EKReminder> openReminders(const CalendarSelection& selection) override {
    const auto answers = tell();
    return remindersIn(contentsOf(*answers, EKEntityType::reminder), selection);
  }

 private:
  [[nodiscard]] std::shared_ptr<const AccountAnswers> tell() {
    questions_.countTelling();
    return questions_.answers();
  }

  void begin(const std::string& localTimeZone) {
    const auto span = firstSpan(actor_.now().secondsSince1970);
    questions_.begin({span.start, span.end, localTimeZone});
    accounts_->watch([this](AccountService* service) { meet(service); });
  }

  void meet(AccountService* service) {
    isAbsent_ = service == nullptr;
    publish();
    if (isAbsent_) return becomeReady();
    for (const auto& feed : feeds_) feed->retry();
    connection_.use(*service);
  }

  // What was read stays; it is tried again by and by.
  void loseDirectory() {
    for (const auto& feed : feeds_) feed->use(nullptr);
    hasServiceFailed_ = true;
    settle();
  }

  void list() {
    const bool isBack = std::exchange(hasServiceFailed_, false);
    Feeds before = std::exchange(feeds_, {});
    bool isOther = false;
    for (auto& calendar : connection_.directory()->calendars()) {
      auto known = takeFrom(before, calendar);
      isOther = isOther || (known && known->calendar() != calendar);
      if (!known) {
        feeds_.push_back(makeFeed(calendar));
      } else {
        known->rename(std::move(calendar.title));
        if (isBack) known->use(connection_.directory());
        feeds_.push_back(std::move(known));
      }
    }
    const bool isLess =
        std::any_of(before.begin(), before.end(), [](auto& feed) { return !!feed; });
    before.clear();
    settle();
    if (isOther || isLess) announce();
  }

  static std::unique_ptr<AccountFeed> takeFrom(Feeds& feeds, const AccountCalendar& calendar) {
    for (auto& feed : feeds) {
      if (feed && feed->calendar().source == calendar.source &&
          feed->calendar().type == calendar.type) {
        return std::move(feed);
      }
    }
    return nullptr;
  }

  std::unique_ptr<AccountFeed> makeFeed(const AccountCalendar& calendar) {
    auto feed = std::make_unique<AccountFeed>(
        calendar, AccountFeed::Surroundings{actor_, options_.patience, sharedPatience_,
                                            [this](std::string text, TextReading::Done done) {
                                              const auto place = questions_.place();
                                              options_.readText(std::move(text), place.window,
                                                                place.shown, std::move(done));
                                            },
                                            [this] {
                                              const auto window = questions_.place().window;
                                              return AccountSpan{window.start, window.end};
                                            },
                                            [this] { return questions_.tellings(); },
                                            [this] { settle(); }, [this] { announce(); }});
    feed->use(connection_.directory());
    feed->look();
    return feed;
  }

  void lookAtEverything() {
    for (const auto& feed : feeds_) feed->look();
  }

  void settle() {
    publish();
    if (isSomeUnknown()) return;
    becomeReady();
    rest_.cancel();
    if (std::exchange(isOwed_, false)) announce();
  }

  [[nodiscard]] bool isSomeUnknown() const {
    return std::any_of(feeds_.begin(), feeds_.end(), [](const auto& feed) {
      return feed->outcome() == AccountFeed::Outcome::unknown;
    });
  }

  void becomeReady() {
    firstLimit_.cancel();
    if (const auto ready = std::exchange(ready_, nullptr)) ready();
  }

  void announce() {
    // Whoever waits for the first answers gets them as they are then.
    if (ready_ || announcement_) return;
    if (rest_) {
      isOwed_ = true;
      return;
    }
    announcement_ = actor_.after(announcementDelay, [this] {
      announcement_.cancel();
      if (isSomeUnknown()) rest_ = actor_.after(announcementDistance, [this] { endRest(); });
      const auto changed = changed_;
      changed();
    });
  }

  void endRest() {
    rest_.cancel();
    if (std::exchange(isOwed_, false)) announce();
  }

  void publish() {
    auto answers = std::make_shared<AccountAnswers>();
    for (const auto& feed : feeds_) {
      answers->calendars.push_back(
          {accountCalendar(feed->calendar()), feed->calendar().type, feed->item()});
    }
    answers->state = currentState();
    const bool isOtherState = answers->state != state();
    questions_.publish(std::move(answers));
    if (isOtherState) announce();
  }

  [[nodiscard]] ProviderState currentState() const {
    ProviderState state;
    state.isAbsent = isAbsent_;
    state.events = accessTo(EKEntityType::event, feeds_);
    state.reminders = accessTo(EKEntityType::reminder, feeds_);
    const auto holds = [](const auto& feed) { return feed->item() != nullptr; };
    if (std::any_of(feeds_.begin(), feeds_.end(), holds)) return state;
    const auto failed = [](const auto& feed) { return feed->hasReaderFailed(); };
    if (hasServiceFailed_) state.failure = serviceFailure;
    if (std::any_of(feeds_.begin(), feeds_.end(), failed)) state.failure = readerFailure;
    return state;
  }

  // From any thread.
  void postAlive(std::function<void()> work) {
    actor_.post([work = std::move(work), alive = isAlive_] {
      if (!alive.expired()) work();
    });
  }

  AccountOptions options_;
  MainActor& actor_;
  Callback ready_;
  Callback changed_;
  AccountQuestions questions_;
  bool isAbsent_ = false;
  bool hasServiceFailed_ = false;
  std::optional<TextReading> reading_;
  std::unique_ptr<Accounts> accounts_;
  DirectoryConnection connection_;
  SharedPatience sharedPatience_{actor_};
  Feeds feeds_;
  Subscription firstLimit_;
  Subscription announcement_;
  Subscription rest_;    // between announcements while calendars are read for the first time
  bool isOwed_ = false;  // an announcement, after the rest
  // Main thread: gone once the provider was stopped.
  std::shared_ptr<int> alive_ = std::make_shared<int>(0);
  const std::weak_ptr<int> isAlive_ = alive_;  // any thread may copy it
};

}  // namespace

std::unique_ptr<CalendarProvider> makeAccountProvider(AccountOptions options,
                                                      std::unique_ptr<Accounts> accounts,
                                                      MainActor& actor) {
  return std::make_unique<AccountProvider>(std::move(options), std::move(accounts), actor);
}

}  // namespace orvane::host
