#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "linux/wire/reader_messages.h"

namespace orvane::host {

// What is remembered of one file's content: only what can be shown, each text once.
class KeptFile {
 public:
  static constexpr std::uint32_t noText = UINT32_MAX;

  struct Event {
    double start;
    double end;
    std::uint32_t uid;
    std::uint32_t recurrenceId;
    std::uint32_t title;  // or noText
    bool isAllDay;
  };
  struct Task {
    std::uint32_t uid;
    std::uint32_t title;  // or noText
    std::optional<DateComponents> due;
    std::int64_t priority;
  };

  // Null when the answer holds nothing to remember.
  static std::unique_ptr<KeptFile> from(wire::FileAnswer& answer);

  [[nodiscard]] const std::vector<Event>& events() const { return events_; }
  [[nodiscard]] const std::vector<Task>& tasks() const { return tasks_; }
  [[nodiscard]] const std::string& text(std::uint32_t index) const { return texts_[index]; }
  [[nodiscard]] std::optional<std::string> title(std::uint32_t index) const {
    return index == noText ? std::nullopt : std::optional(texts_[index]);
  }
  // What the file calls its calendar, fit to be shown.
  [[nodiscard]] const std::optional<std::string>& calendarName() const { return calendarName_; }

 private:
  std::vector<std::string> texts_;
  std::vector<Event> events_;
  std::vector<Task> tasks_;
  std::optional<std::string> calendarName_;
};

}  // namespace orvane::host
