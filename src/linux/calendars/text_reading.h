#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "foundation/main_actor.h"
#include "linux/calendars/item_shelf.h"
#include "linux/calendars/read_window.h"
#include "linux/calendars/reader_client.h"

namespace orvane::host {

// What a text says in a window of time.
struct TextContent {
  std::shared_ptr<const ShelfItem> item;  // not null
  std::uint64_t print = 0;                // differs where two contents do
};

// Nothing when the answer is none that can be shown.
std::optional<TextContent> contentOf(wire::FileAnswer answer);

enum class TextFailure { text, program };

// Has iCalendar texts read by the reader program, however many there are on one worker thread at a
// time, and on one more those that keep the reader busy for long: each costs those that were asked
// for with it its second, and then has only its like beside it. Main thread only.
class TextReading {
 public:
  // Null: the text, or the program that reads it, is of no use.
  using Done = std::function<void(const TextContent* content, TextFailure failure)>;

  TextReading(const std::string& readerPath, MainActor& actor, const ReaderLimits& limits = {});
  TextReading(const TextReading&) = delete;
  TextReading& operator=(const TextReading&) = delete;
  ~TextReading() { stop(); }

  // `done` is called once in a later turn, as soon as this text is read and in any order, unless
  // everything was stopped before.
  void read(std::string text, const ReadWindow& window, const ShownSpan& shown, Done done);
  // Reading ends soon, and nothing is called any more.
  void stop();

 private:
  struct Order;
  struct Job;

  struct Lane {
    Lane(const std::string& readerPath, const ReaderLimits& limits);

    std::shared_ptr<const ReaderClient> client;
    std::deque<std::shared_ptr<Order>> waiting;
    bool isReading = false;
  };
  using Hand = std::function<void(std::shared_ptr<Order>, std::optional<TextContent>)>;

  void begin(Lane& lane);
  void finish(const Job& job, Lane& lane);
  // On a worker thread. `hand` takes each text's content, or nothing, as soon as it is known.
  static void work(Job& job, bool isPrompt, const ReaderClient& client,
                   const std::atomic<bool>& isStopped, const Hand& hand);

  MainActor& actor_;
  Lane prompt_;
  Lane slow_;  // what could not be read there in time
  // Shared with the worker thread, which may outlast this for a moment.
  const std::shared_ptr<std::atomic<bool>> isStopped_ = std::make_shared<std::atomic<bool>>(false);
};

}  // namespace orvane::host
