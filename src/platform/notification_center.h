#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>

#include "foundation/subject.h"
#include "foundation/subscription.h"

namespace orvane {

// Where adapters announce by name that something in the world changed. Observers are called within
// post(), on the main thread, in the order in which they were added.
class NotificationCenter {
 public:
  NotificationCenter() = default;

  Subscription addObserver(const std::string& name, std::function<void()> observer) {
    return subjects_[name].subscribe(std::move(observer));
  }
  void post(const std::string& name) { subjects_[name].send(); }

 private:
  std::map<std::string, Subject<>> subjects_;
};

}  // namespace orvane
