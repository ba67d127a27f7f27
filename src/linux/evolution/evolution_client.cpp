#include "linux/evolution/evolution_client.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <optional>
#include <string>
#include <utility>

#include "linux/evolution/calendar_view.h"
#include "linux/evolution/call.h"
#include "linux/evolution/component_text.h"
#include "linux/evolution/query.h"
#include "linux/evolution/signal_handlers.h"
#include "linux/gio/handles.h"

namespace orvane::host {
namespace {

using Client = std::shared_ptr<ECalClient>;
using Text = std::optional<std::string>;

// Waiting until the account is reached is for those who would ask its user for a password: without
// it what the service has kept is there at once, and what it hears later is a change.
constexpr guint32 doNotWait = static_cast<guint32>(-1);

// Blocks. Null: it cannot be had.
Client connectTo(ESource* source, EKEntityType type, GCancellable* cancellable) {
  const auto kind = type == EKEntityType::event ? E_CAL_CLIENT_SOURCE_TYPE_EVENTS
                                                : E_CAL_CLIENT_SOURCE_TYPE_TASKS;
  gio::Failure failure;
  auto* const client =
      e_cal_client_connect_sync(source, kind, doNotWait, cancellable, failure.out());
  if (client == nullptr) return nullptr;
  return {reinterpret_cast<ECalClient*>(client), gio::ReleaseObject()};
}

void releaseComponents(GSList* components) { g_slist_free_full(components, g_object_unref); }
using Components = std::unique_ptr<GSList, void (*)(GSList*)>;

// Of a text from which on what its components took is worth looking for.
constexpr std::size_t muchText = 256 * 1024;

// A component is hundreds of small pieces of memory. Those of thousands, once freed, lie among a
// few that stay, and the allocator gives back of itself only what lies behind all of these.
void giveMemoryBack() {
#ifdef __GLIBC__
  malloc_trim(0);
#endif
}

// Blocks. Nothing: it failed.
Text fetchText(ECalClient* client, const std::string& query, GCancellable* cancellable) {
  GSList* found = nullptr;
  gio::Failure failure;
  if (!e_cal_client_get_object_list_sync(client, query.c_str(), &found, cancellable,
                                         failure.out())) {
    return std::nullopt;
  }
  Components components(found, &releaseComponents);
  auto text = calendarText(client, components.get(), cancellable);
  components.reset();
  if (text.size() > muchText) giveMemoryBack();
  if (g_cancellable_is_cancelled(cancellable)) return std::nullopt;
  return text;
}

// Whoever hears it may destroy us.
void tell(std::function<void()> sign) { sign(); }

class EvolutionClient final : public AccountClient {
 public:
  EvolutionClient(std::shared_ptr<CallThreads> threads, ESource* source, EKEntityType type,
                  Client client, AccountSigns signs)
      : threads_(std::move(threads)),
        source_(gio::shared(source)),
        type_(type),
        client_(std::move(client)),
        signs_(std::move(signs)),
        clientHandlers_(client_.get()),
        sourceHandlers_(source) {
    clientHandlers_.add("backend-died", [this] { tell(signs_.died); });
    // Its views tell a third of a second later, since they gather what they tell.
    clientHandlers_.addFor("backend-property-changed", E_CAL_BACKEND_PROPERTY_REVISION,
                           [this] { hearRevision(); });
    // This one comes on a thread of the library.
    sourceHandlers_.add("notify::connection-status",
                        [threads = threads_, self = std::weak_ptr(self_)] {
                          threads->post([self] {
                            if (const auto alive = self.lock()) (*alive)->noteConnection();
                          });
                        });
  }
  ~EvolutionClient() override { self_.reset(); }
  EvolutionClient(const EvolutionClient&) = delete;
  EvolutionClient& operator=(const EvolutionClient&) = delete;

  Subscription fetch(const AccountSpan& span,
                     std::function<void(std::optional<AccountItems>)> fetched) override {
    fetched_ = std::move(fetched);
    auto query = queryFor(type_, span);
    // One that was given up before it was complete may never have begun.
    if (!view_ || !view_->isComplete() || query != query_) {
      query_ = std::move(query);
      view_.reset();
      askForView();
    } else {
      fetchList();
    }
    question_ = std::make_shared<EvolutionClient*>(this);
    return Subscription([question = std::weak_ptr(question_)] {
      if (const auto asked = question.lock()) (*asked)->giveUp();
    });
  }

 private:
  // The view comes first, so that no change is lost between the two.
  void askForView() {
    step_ = callOnThread<CalendarView::Handle>(
        *threads_,
        [client = client_, query = query_](GCancellable* cancellable) {
          return CalendarView::ask(client.get(), query, cancellable);
        },
        [this](const CalendarView::Handle& handle) { beginView(handle); });
  }

  // Its end may come to be known before its beginning is; then the list is already asked for.
  void beginView(const CalendarView::Handle& handle) {
    if (!handle) return answer(std::nullopt);
    view_.emplace(handle);
    view_->listen({[this] { fetchList(); }, [this] { tell(signs_.changed); }});
    step_ = callOnThread<bool>(
        *threads_, [handle](GCancellable*) { return CalendarView::begin(handle.get()); },
        [this](bool hasBegun) {
          if (!hasBegun) answer(std::nullopt);
        });
  }

  void fetchList() {
    if (!fetched_) return;
    step_ = callOnThread<Text>(
        *threads_,
        [client = client_, query = query_](GCancellable* cancellable) {
          return fetchText(client.get(), query, cancellable);
        },
        [this](Text text) { answer(std::move(text)); });
  }

  void answer(Text text) {
    const auto fetched = std::exchange(fetched_, nullptr);
    if (!fetched) return;
    if (!text) return fetched(std::nullopt);
    wantedSignIn_ = wantsSignIn();
    fetched(AccountItems{std::move(*text), wantedSignIn_});
  }

  // That something is different, in these days or others. What is there already was asked for.
  void hearRevision() {
    if (view_ && view_->isComplete()) tell(signs_.changed);
  }

  void giveUp() {
    step_.cancel();
    fetched_ = nullptr;
  }

  // Who tries a sign-in that was wanted has not succeeded yet, and may not.
  [[nodiscard]] bool wantsSignIn() const {
    switch (e_source_get_connection_status(source_.get())) {
      case E_SOURCE_CONNECTION_STATUS_AWAITING_CREDENTIALS:
      case E_SOURCE_CONNECTION_STATUS_SSL_FAILED:
        return true;
      case E_SOURCE_CONNECTION_STATUS_CONNECTED:
        return false;
      default:
        return wantedSignIn_;
    }
  }

  void noteConnection() {
    // Another thread may set it meanwhile; it then tells of it once more.
    const bool wants = wantsSignIn();
    if (std::exchange(wantedSignIn_, wants) != wants) tell(signs_.changed);
  }

  const std::shared_ptr<CallThreads> threads_;
  const gio::ObjectPtr<ESource> source_;
  const EKEntityType type_;
  const Client client_;
  const AccountSigns signs_;
  std::string query_;  // of the view
  bool wantedSignIn_ = false;
  std::shared_ptr<EvolutionClient*> question_;  // the one that is to be answered
  std::function<void(std::optional<AccountItems>)> fetched_;
  std::shared_ptr<EvolutionClient*> self_ = std::make_shared<EvolutionClient*>(this);
  std::optional<CalendarView> view_;
  Subscription step_;
  SignalHandlers clientHandlers_;
  SignalHandlers sourceHandlers_;
};

}  // namespace

Subscription openCalendar(std::shared_ptr<CallThreads> threads, ESource* source, EKEntityType type,
                          AccountSigns signs,
                          std::function<void(std::unique_ptr<AccountClient>)> opened) {
  const std::shared_ptr<ESource> kept(gio::shared(source).release(), gio::ReleaseObject());
  return callOnThread<Client>(
      *threads,
      [kept, type](GCancellable* cancellable) { return connectTo(kept.get(), type, cancellable); },
      [threads, kept, type, signs = std::move(signs), opened = std::move(opened)](Client client) {
        if (!client) return opened(nullptr);
        opened(
            std::make_unique<EvolutionClient>(threads, kept.get(), type, std::move(client), signs));
      });
}

}  // namespace orvane::host
