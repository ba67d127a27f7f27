#include "linux/settingswindow/gtk/mnemonics.h"

#include <optional>

namespace orvane::window {
namespace {

std::optional<char> letterOf(char c) {
  if (c >= 'a' && c <= 'z') return c;
  if (c >= 'A' && c <= 'Z') return static_cast<char>(c - 'A' + 'a');
  return std::nullopt;
}

bool beginsWord(std::string_view label, std::size_t at) { return at == 0 || label[at - 1] == ' '; }

std::string marked(std::string_view label, std::size_t at) {
  std::string text;
  for (std::size_t i = 0; i < label.size(); ++i) {
    if (i == at || label[i] == '_') text += '_';
    text += label[i];
  }
  return text;
}

}  // namespace

bool Mnemonics::isFree(char letter) const { return taken_.find(letter) == std::string::npos; }

std::string Mnemonics::mark(std::string_view label) {
  std::size_t best = label.size();
  for (std::size_t i = 0; i < label.size(); ++i) {
    const auto letter = letterOf(label[i]);
    if (!letter || !isFree(*letter)) continue;
    if (best == label.size() || beginsWord(label, i)) best = i;
    if (beginsWord(label, i)) break;
  }
  if (best < label.size()) taken_ += *letterOf(label[best]);
  return marked(label, best);
}

}  // namespace orvane::window
