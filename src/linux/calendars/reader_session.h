#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "linux/calendars/reader_process.h"
#include "linux/wire/reader_messages.h"

namespace orvane::host {

// One conversation with one reader process: a request written, answers taken as they come.
class ReaderSession {
 public:
  using Clock = std::chrono::steady_clock;

  // `indices` are the caller's names for the request's paths.
  ReaderSession(ReaderProcess process, const wire::ReadRequest& request,
                std::vector<std::size_t> indices, Clock::duration patience);

  [[nodiscard]] int input() const { return process_.input(); }
  [[nodiscard]] int output() const { return process_.output(); }

  // Writes what can be written without waiting.
  void write();
  // Reads what has arrived.
  void read();
  // The next answer, for the path unanswered().front() until now.
  std::optional<wire::FileAnswer> next();

  [[nodiscard]] bool isLone() const { return paths_.size() == 1; }
  [[nodiscard]] bool isDone() const { return answered_ == paths_.size(); }
  // It ended early, said something else than answers, or kept silent for too long.
  [[nodiscard]] bool hasFailed() const;
  [[nodiscard]] Clock::time_point deadline() const { return deadline_; }
  [[nodiscard]] std::vector<std::size_t> unanswered() const;
  // Of a request without paths: whether the process takes it and ends well.
  bool endsWell(std::chrono::milliseconds patience);

 private:
  ReaderProcess process_;
  std::vector<std::string> paths_;
  std::vector<std::size_t> indices_;
  std::string request_;
  std::size_t written_ = 0;
  wire::AnswerStream answers_;
  std::size_t answered_ = 0;
  bool ended_ = false;
  bool isNonsense_ = false;
  Clock::duration patience_;
  Clock::time_point deadline_;
};

}  // namespace orvane::host
