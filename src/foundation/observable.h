#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "foundation/subject.h"
#include "foundation/subscription.h"

namespace orvane {

// The base of an object whose published properties announce every change. An announcement comes
// before the change is in place, also when the new value equals the old one. Main thread only.
class ObservableObject {
 public:
  ObservableObject() = default;
  ObservableObject(const ObservableObject&) = delete;
  ObservableObject& operator=(const ObservableObject&) = delete;

  // "Any property is about to change." Carries nothing: read the new state later, not in the
  // observer.
  [[nodiscard]] Subject<>& objectWillChange() { return willChange_; }

 private:
  Subject<> willChange_;
};

// One property of an ObservableObject. Assigning (1) tells the object's observers, (2) tells this
// property's observers the new value, (3) puts the value in place, (4) runs `didSet`, if any. The
// owner must outlive it, which it does when the property is one of its members.
template <class T>
class Published {
 public:
  using DidSet = std::function<void(const T&)>;

  Published(ObservableObject& owner, T initial, DidSet didSet = nullptr)
      : owner_(owner), value_(std::move(initial)), didSet_(std::move(didSet)) {}
  Published(const Published&) = delete;

  Published& operator=(T value) {
    static_cast<void>(exchange(std::move(value)));
    return *this;
  }
  // Assigns, and hands back what was in place, for those who care where it is destroyed.
  [[nodiscard]] T exchange(T value) {
    owner_.objectWillChange().send();
    subject_.send(value);
    std::swap(value_, value);
    if (didSet_) didSet_(value_);
    return value;
  }
  Published& operator=(const Published&) = delete;

  [[nodiscard]] const T& get() const { return value_; }
  operator const T&() const { return value_; }
  const T* operator->() const { return &value_; }
  const T& operator*() const { return value_; }

  // Delivers the current value before returning, then every assigned one before it is in place.
  Subscription subscribe(std::function<void(const T&)> observer) {
    observer(value_);
    return subject_.subscribe(std::move(observer));
  }

 private:
  ObservableObject& owner_;
  T value_;
  DidSet didSet_;
  Subject<T> subject_;
};

// Delivers the current pair before returning, then a new pair whenever either property is
// assigned; the pair holds the assigned value although it is not in place yet.
template <class A, class B>
Subscription combineLatest(Published<A>& first, Published<B>& second,
                           std::function<void(const A&, const B&)> observer) {
  struct Latest {
    std::pair<A, B> values;
    bool started = false;
    std::function<void(const A&, const B&)> observer;
    Subscription onFirst, onSecond;
    void deliver() const {
      if (started) observer(values.first, values.second);
    }
  };
  auto latest = std::make_shared<Latest>();
  latest->values = {first.get(), second.get()};
  latest->observer = std::move(observer);
  std::weak_ptr<Latest> weak = latest;
  latest->onFirst = first.subscribe([weak](const A& value) {
    if (auto self = weak.lock()) {
      self->values.first = value;
      self->deliver();
    }
  });
  latest->onSecond = second.subscribe([weak](const B& value) {
    if (auto self = weak.lock()) {
      self->values.second = value;
      self->deliver();
    }
  });
  latest->started = true;
  latest->deliver();
  return Subscription([latest]() mutable { latest.reset(); });
}

}  // namespace orvane
