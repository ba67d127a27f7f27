#include "linux/mainloop/end_limit.h"

#include <condition_variable>
#include <cstdlib>
#include <iostream>
#include <mutex>
#include <system_error>
#include <thread>

namespace orvane::host {

class EndLimit::Watch {
 public:
  explicit Watch(std::chrono::milliseconds patience)
      : thread_([this, patience] { wait(patience); }) {}
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;
  ~Watch() {
    {
      const std::lock_guard lock(mutex_);
      hasEnded_ = true;
    }
    ended_.notify_one();
    thread_.join();
  }

 private:
  void wait(std::chrono::milliseconds patience) {
    std::unique_lock lock(mutex_);
    if (ended_.wait_for(lock, patience, [this] { return hasEnded_; })) return;
    std::cerr << "orvane: A disk or a server does not answer; the program ends without waiting for "
                 "it any longer, and what was changed last may not be saved."
              << std::endl;
    std::_Exit(EXIT_SUCCESS);
  }

  std::mutex mutex_;
  std::condition_variable ended_;
  bool hasEnded_ = false;
  std::thread thread_;  // last, since it uses the others
};

EndLimit::EndLimit() = default;
EndLimit::~EndLimit() = default;

void EndLimit::begin(std::chrono::milliseconds patience) {
  try {
    watch_ = std::make_unique<Watch>(patience);
  } catch (const std::system_error&) {
    watch_.reset();
  }
}

}  // namespace orvane::host
