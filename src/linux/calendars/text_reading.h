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

// Has iCalendar texts read by the reader program, on one worker thread at a time however many there
// are. Main thread only.
class TextReading {
 public:
  // Null: the text, or the program that reads it, is of no use.
  using Done = std::function<void(const TextContent* content, TextFailure failure)>;

  TextReading(std::string readerPath, MainActor& actor);
  TextReading(const TextReading&) = delete;
  TextReading& operator=(const TextReading&) = delete;
  ~TextReading() { stop(); }

  // `done` is called once in a later turn, unless everything was stopped before.
  void read(std::string text, const ReadWindow& window, const ShownSpan& shown, Done done);
  // Reading ends soon, and nothing is called any more.
  void stop();

 private:
  struct Order;
  struct Job;

  void begin();
  void finish(Job& job);
  static void work(Job& job, const ReaderClient& client, const std::atomic<bool>& isStopped);

  MainActor& actor_;
  const std::shared_ptr<const ReaderClient> client_;
  std::deque<std::shared_ptr<Order>> waiting_;
  bool isReading_ = false;
  // Shared with the worker thread, which may outlast this for a moment.
  const std::shared_ptr<std::atomic<bool>> isStopped_ = std::make_shared<std::atomic<bool>>(false);
};

}  // namespace orvane::host
