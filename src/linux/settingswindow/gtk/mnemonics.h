#pragma once

#include <string>
#include <string_view>

namespace orvane::window {

// Gives labels the letters by which they are reached with Alt, each letter once. The text itself is
// not changed: the letter is one of its own, ASCII, that of a word's beginning if there is one
// left.
class Mnemonics {
 public:
  // The label with an underscore before its letter, as the toolkit marks it, and its own
  // underscores doubled. A label of which every letter is taken gets none.
  [[nodiscard]] std::string mark(std::string_view label);

 private:
  [[nodiscard]] bool isFree(char letter) const;

  std::string taken_;
};

}  // namespace orvane::window
