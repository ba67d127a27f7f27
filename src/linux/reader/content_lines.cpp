#include "linux/reader/content_lines.h"

#include <algorithm>

namespace orvane::ical {

namespace {

char lowered(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + ('a' - 'A')) : letter;
}

bool isFold(char letter) { return letter == ' ' || letter == '\t'; }

}  // namespace

std::string_view ContentLines::takePhysicalLine() {
  if (nextLineFeed_ < position_ || position_ == 0) {
    nextLineFeed_ = std::min(text_.find('\n', position_), text_.size());
  }
  const std::string_view upToLineFeed = text_.substr(position_, nextLineFeed_ - position_);
  const std::size_t size = std::min(upToLineFeed.find('\r'), upToLineFeed.size());
  const std::string_view line = upToLineFeed.substr(0, size);
  position_ += size;
  if (position_ < text_.size() && text_[position_] == '\r') ++position_;
  if (position_ < text_.size() && text_[position_] == '\n') ++position_;
  return line;
}

bool ContentLines::next() {
  do {
    if (position_ >= text_.size()) return false;
    begin_ = position_;
    line_ = takePhysicalLine().substr(0, kLongestLine);
  } while (line_.empty());
  if (position_ >= text_.size() || !isFold(text_[position_])) return true;
  unfolded_.assign(line_);
  while (position_ < text_.size() && isFold(text_[position_])) {
    const std::string_view more = takePhysicalLine().substr(1);
    unfolded_.append(more.substr(0, kLongestLine - std::min(kLongestLine, unfolded_.size())));
  }
  line_ = unfolded_;
  return true;
}

ContentLine splitContentLine(std::string_view line) {
  ContentLine parts;
  const std::size_t nameEnd = std::min(line.find_first_of(";:"), line.size());
  parts.name = line.substr(0, nameEnd);
  bool isQuoted = false;
  std::size_t colon = nameEnd;
  while (colon < line.size() && (isQuoted || line[colon] != ':')) {
    if (line[colon] == '"') isQuoted = !isQuoted;
    ++colon;
  }
  // A quote that is never closed does not swallow the value.
  if (colon == line.size()) colon = std::min(line.find(':', nameEnd), line.size());
  parts.parameters = line.substr(nameEnd, colon - nameEnd);
  parts.value = line.substr(std::min(colon + 1, line.size()));
  return parts;
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return lowered(x) == lowered(y); });
}

}  // namespace orvane::ical
