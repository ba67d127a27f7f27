#include "linux/calendars/text_reading.h"

#include <algorithm>
#include <utility>

#include "linux/calendars/memory_file.h"
#include "linux/calendars/stable_hash.h"

namespace orvane::host {

struct TextReading::Order {
  std::string text;
  ReadWindow window;
  ShownSpan shown;
  Done done;
  std::optional<MemoryFile> file;  // in place of the text, once a worker has made it
};

// Texts of one window; the reader takes them together.
struct TextReading::Job {
  std::vector<std::shared_ptr<Order>> orders;
  std::vector<std::shared_ptr<Order>> unread;  // when it is over
  bool programFailed = false;
};

std::optional<TextContent> contentOf(wire::FileAnswer answer) {
  if (answer.outcome != wire::ReadOutcome::good) return std::nullopt;
  answer.path.clear();
  TextContent content;
  content.print = stableHash(wire::encode(answer));
  auto item = std::make_shared<ShelfItem>();
  item->state = ItemState::good;
  item->holdsEvents = answer.holdsEvents;
  item->holdsTasks = answer.holdsTasks;
  item->isForShownOnly = answer.isForShownOnly;
  item->kept = KeptFile::from(answer);
  content.item = std::move(item);
  return content;
}

// Nobody's time is lost on what is slow as well.
static ReaderLimits alone(ReaderLimits limits) {
  limits.filesPerProcess = 1;
  return limits;
}

TextReading::Lane::Lane(const std::string& readerPath, const ReaderLimits& limits)
    : client(std::make_shared<ReaderClient>(readerPath, limits)) {}

TextReading::TextReading(const std::string& readerPath, MainActor& actor,
                         const ReaderLimits& limits)
    : actor_(actor), prompt_(readerPath, limits), slow_(readerPath, alone(limits)) {}

void TextReading::read(std::string text, const ReadWindow& window, const ShownSpan& shown,
                       Done done) {
  prompt_.waiting.push_back(std::make_shared<Order>(
      Order{std::move(text), window, shown, std::move(done), std::nullopt}));
  begin(prompt_);
}

void TextReading::stop() {
  *isStopped_ = true;
  prompt_.waiting.clear();
  slow_.waiting.clear();
}

void TextReading::begin(Lane& lane) {
  if (lane.isReading || lane.waiting.empty()) return;
  lane.isReading = true;
  auto job = std::make_shared<Job>();
  auto& waiting = lane.waiting;
  const auto first = waiting.front();
  const auto rest = std::stable_partition(
      waiting.begin(), waiting.end(), [&first](const std::shared_ptr<Order>& order) {
        return order->window == first->window && order->shown == first->shown;
      });
  job->orders.assign(waiting.begin(), rest);
  waiting.erase(waiting.begin(), rest);
  const bool isPrompt = &lane == &prompt_;
  actor_.runOnWorker(
      [this, job, isPrompt, client = lane.client, isStopped = isStopped_, &actor = actor_] {
        const auto hand = [&](std::shared_ptr<Order> order, std::optional<TextContent> content) {
          actor.post([order = std::move(order), content = std::move(content), isStopped] {
            if (!*isStopped) order->done(content ? &*content : nullptr, TextFailure::text);
          });
        };
        work(*job, isPrompt, *client, *isStopped, hand);
        actor.post([this, job, isPrompt, isStopped] {
          if (!*isStopped) finish(*job, isPrompt ? prompt_ : slow_);
        });
      });
}

void TextReading::work(Job& job, bool isPrompt, const ReaderClient& client,
                       const std::atomic<bool>& isStopped, const Hand& hand) {
  const auto& first = *job.orders.front();
  ReadJob read{
      first.window.start, first.window.end, first.window.localTimeZone, {}, first.shown.start,
      first.shown.end,    isPrompt};
  std::vector<std::shared_ptr<Order>> orders;
  for (const auto& order : job.orders) {
    if (!order->file) order->file = MemoryFile::holding(std::exchange(order->text, {}));
    if (!order->file) {
      hand(order, std::nullopt);
      continue;
    }
    read.paths.push_back(order->file->path());
    orders.push_back(order);
  }
  const auto sink = [&](std::size_t index, wire::FileAnswer* answer) {
    hand(orders[index], answer == nullptr ? std::nullopt : contentOf(std::move(*answer)));
  };
  const auto pace = [&isStopped] { return isStopped ? ReadPace::stop : ReadPace::goOn; };
  const auto report = client.read(read, sink, pace);
  job.programFailed = report.programFailed;
  for (const auto index : report.unread) job.unread.push_back(orders[index]);
}

void TextReading::finish(const Job& job, Lane& lane) {
  lane.isReading = false;
  const bool isTriedAgain = &lane == &prompt_ && !job.programFailed;
  if (isTriedAgain) {
    slow_.waiting.insert(slow_.waiting.end(), job.unread.begin(), job.unread.end());
  }
  begin(prompt_);
  begin(slow_);
  if (isTriedAgain) return;
  const auto isStopped = isStopped_;
  const auto failure = job.programFailed ? TextFailure::program : TextFailure::text;
  for (const auto& order : job.unread) {
    if (*isStopped) return;
    order->done(nullptr, failure);
  }
}

}  // namespace orvane::host
