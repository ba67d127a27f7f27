#include "linux/calendars/kept_file.h"

#include <unordered_map>
#include <utility>

#include "linux/calendars/shown_text.h"

namespace orvane::host {
namespace {

// Gives equal texts one place.
class TextTable {
 public:
  std::uint32_t place(std::string& text) {
    const auto [known, isNew] =
        places_.try_emplace(std::move(text), static_cast<std::uint32_t>(places_.size()));
    return known->second;
  }
  std::uint32_t place(std::optional<std::string>& text) {
    return text ? place(*text) : KeptFile::noText;
  }
  std::vector<std::string> take() {
    std::vector<std::string> texts(places_.size());
    while (!places_.empty()) {
      auto node = places_.extract(places_.begin());
      texts[node.mapped()] = std::move(node.key());
    }
    return texts;
  }

 private:
  std::unordered_map<std::string, std::uint32_t> places_;
};

}  // namespace

std::unique_ptr<KeptFile> KeptFile::from(wire::FileAnswer& answer) {
  auto name = answer.calendarName ? shownText(*answer.calendarName) : std::string();
  if (answer.events.empty() && answer.tasks.empty() && name.empty()) return nullptr;

  auto kept = std::make_unique<KeptFile>();
  TextTable texts;
  kept->events_.reserve(answer.events.size());
  for (auto& event : answer.events) {
    kept->events_.push_back({event.start, event.end, texts.place(event.uid),
                             texts.place(event.recurrenceId), texts.place(event.title),
                             event.isAllDay});
  }
  kept->tasks_.reserve(answer.tasks.size());
  for (auto& task : answer.tasks) {
    kept->tasks_.push_back(
        {texts.place(task.uid), texts.place(task.title), std::move(task.due), task.priority});
  }
  kept->texts_ = texts.take();
  if (!name.empty()) kept->calendarName_ = std::move(name);
  return kept;
}

}  // namespace orvane::host
