#include "linux/mainloop/second_beat.h"

namespace orvane::host {
namespace {

// A timer may fire a little before its time by the clock that is read afterwards.
constexpr SecondBeat::Time kEarly = std::chrono::milliseconds(20);

SecondBeat::Second wholeSecond(SecondBeat::Time time) {
  return std::chrono::floor<SecondBeat::Second>(time);
}

}  // namespace

SecondBeat::Time SecondBeat::start(Time now) {
  last_.reset();
  awaited_ = wholeSecond(now) + Second(1);
  return awaited_;
}

SecondBeat::Beat SecondBeat::reached(Time now) {
  const bool early = now < awaited_ && awaited_ - now <= kEarly;
  return announce(early ? awaited_ : wholeSecond(now));
}

SecondBeat::Beat SecondBeat::clockChanged(Time now) { return announce(wholeSecond(now)); }

SecondBeat::Beat SecondBeat::announce(Second second) {
  const bool repeated = last_ == second;
  last_ = second;
  awaited_ = second + Second(1);
  return {repeated ? std::nullopt : std::optional(second), awaited_};
}

}  // namespace orvane::host
