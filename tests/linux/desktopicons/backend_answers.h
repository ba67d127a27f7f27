// What a backend answers, waited for.
#pragma once

#include <gtest/gtest.h>

#include <optional>

#include "../gio/private_bus.h"
#include "linux/desktopicons/icon_backend.h"

namespace orvane::host::desktopicons {

inline IconState captured(IconBackend& backend) {
  std::optional<IconState> state;
  backend.capture([&](const std::optional<IconState>& answer) { state = answer; });
  EXPECT_TRUE(state);
  return state.value_or(IconState{});
}
// Answered when the store has it.
inline bool hidden(IconBackend& backend, const IconState& state) {
  std::optional<Outcome> answer;
  backend.hide(state, [&](Outcome outcome) { answer = outcome; });
  return gio::eventually([&] { return answer.has_value(); }) && answer == Outcome::done;
}
inline bool givenBack(IconBackend& backend, const IconState& state) {
  std::optional<Outcome> answer;
  backend.giveBack(state, [&](Outcome outcome) { answer = outcome; });
  return gio::eventually([&] { return answer.has_value(); }) && answer == Outcome::done;
}

}  // namespace orvane::host::desktopicons
