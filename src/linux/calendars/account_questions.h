#pragma once

#include <cstdint>
#include <memory>
#include <mutex>

#include "linux/calendars/account_answers.h"
#include "linux/calendars/read_window.h"

namespace orvane::host {

// Where the worker threads that ask and the main thread that knows meet; any thread, never blocking
// for longer than it takes to copy a pointer.
class AccountQuestions {
 public:
  [[nodiscard]] std::shared_ptr<const AccountAnswers> answers() const {
    const std::lock_guard lock(mutex_);
    return answers_;
  }
  void publish(std::shared_ptr<const AccountAnswers> answers) {
    const std::lock_guard lock(mutex_);
    answers_ = std::move(answers);
  }

  struct Place {
    ReadWindow window;
    ShownSpan shown;
  };
  [[nodiscard]] Place place() const {
    const std::lock_guard lock(mutex_);
    return place_;
  }
  void begin(const ReadWindow& window) {
    const std::lock_guard lock(mutex_);
    place_ = {window, {window.start, window.end}};
  }
  // Somebody asks for [start, end). Answers whether everything is to be read again for that.
  bool ask(double start, double end, const std::string& localTimeZone);

  // Whenever somebody is told something.
  void countTelling() {
    const std::lock_guard lock(mutex_);
    ++tellings_;
  }
  [[nodiscard]] std::uint64_t tellings() const {
    const std::lock_guard lock(mutex_);
    return tellings_;
  }

 private:
  mutable std::mutex mutex_;
  std::shared_ptr<const AccountAnswers> answers_ = std::make_shared<AccountAnswers>();
  Place place_;
  std::uint64_t tellings_ = 0;
};

}  // namespace orvane::host
