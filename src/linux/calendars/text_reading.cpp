#include "linux/calendars/text_reading.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "linux/calendars/memory_file.h"
#include "linux/calendars/stable_hash.h"

namespace orvane::host {

struct TextReading::Order {
  std::string text;
  ReadWindow window;
  ShownSpan shown;
  Done done;
  std::optional<TextContent> content;
};

// Texts of one window; the reader takes them together.
struct TextReading::Job {
  std::vector<std::shared_ptr<Order>> orders;
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

TextReading::TextReading(std::string readerPath, MainActor& actor)
    : actor_(actor), client_(std::make_shared<ReaderClient>(std::move(readerPath))) {}

void TextReading::read(std::string text, const ReadWindow& window, const ShownSpan& shown,
                       Done done) {
  waiting_.push_back(std::make_shared<Order>(
      Order{std::move(text), window, shown, std::move(done), std::nullopt}));
  if (!isReading_) begin();
}

void TextReading::stop() {
  *isStopped_ = true;
  waiting_.clear();
}

void TextReading::begin() {
  isReading_ = true;
  auto job = std::make_shared<Job>();
  const auto first = waiting_.front();
  const auto rest = std::stable_partition(
      waiting_.begin(), waiting_.end(), [&first](const std::shared_ptr<Order>& order) {
        return order->window == first->window && order->shown == first->shown;
      });
  job->orders.assign(waiting_.begin(), rest);
  waiting_.erase(waiting_.begin(), rest);
  actor_.runOnWorker([this, job, client = client_, isStopped = isStopped_, &actor = actor_] {
    work(*job, *client, *isStopped);
    actor.post([this, job, isStopped] {
      if (!*isStopped) finish(*job);
    });
  });
}

void TextReading::work(Job& job, const ReaderClient& client, const std::atomic<bool>& isStopped) {
  const auto& first = *job.orders.front();
  ReadJob read{first.window.start, first.window.end, first.window.localTimeZone, {},
               first.shown.start,  first.shown.end};
  std::vector<MemoryFile> files;
  std::vector<Order*> orders;
  for (const auto& order : job.orders) {
    auto file = MemoryFile::holding(order->text);
    order->text = {};
    if (!file) continue;
    read.paths.push_back(file->path());
    files.push_back(std::move(*file));
    orders.push_back(order.get());
  }
  const auto sink = [&orders](std::size_t index, wire::FileAnswer* answer) {
    if (answer != nullptr) orders[index]->content = contentOf(std::move(*answer));
  };
  const auto pace = [&isStopped] { return isStopped ? ReadPace::stop : ReadPace::goOn; };
  job.programFailed = client.read(read, sink, pace).programFailed;
}

void TextReading::finish(Job& job) {
  isReading_ = false;
  const auto isStopped = isStopped_;
  if (!waiting_.empty()) begin();
  for (const auto& order : job.orders) {
    if (*isStopped) return;
    const auto failure = job.programFailed ? TextFailure::program : TextFailure::text;
    order->done(order->content ? &*order->content : nullptr, failure);
  }
}

}  // namespace orvane::host
