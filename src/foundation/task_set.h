#pragma once

#include <coroutine>
#include <cstddef>
#include <unordered_set>

namespace orvane {

// Owns the outermost frames of the coroutines that run on one loop. A frame leaves the set by
// itself when it has run to its end; destroyAll() destroys those still suspended, and with them
// everything they await. Main thread only.
class TaskSet {
 public:
  TaskSet() = default;
  TaskSet(const TaskSet&) = delete;
  TaskSet& operator=(const TaskSet&) = delete;
  ~TaskSet() { destroyAll(); }

  void add(std::coroutine_handle<> frame) { frames_.insert(frame.address()); }
  void remove(std::coroutine_handle<> frame) { frames_.erase(frame.address()); }
  [[nodiscard]] bool contains(std::coroutine_handle<> frame) const {
    return frames_.contains(frame.address());
  }
  [[nodiscard]] std::size_t size() const { return frames_.size(); }
  void destroyAll() {
    while (!frames_.empty()) {
      void* frame = *frames_.begin();
      frames_.erase(frames_.begin());
      std::coroutine_handle<>::from_address(frame).destroy();
    }
  }

 private:
  std::unordered_set<void*> frames_;
};

}  // namespace orvane
