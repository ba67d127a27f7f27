#include "linux/settingswindow/gtk/shown_form.h"

#include <algorithm>
#include <utility>

#include "linux/settingswindow/gtk/form_edits.h"

namespace orvane::window {

// Of several edits of one control only the last one shows, but for a list, whose rows have keys of
// their own.
void ShownForm::edit(FormEdit edit, std::uint64_t number) {
  shown_ = edited(std::move(shown_), edit);
  std::erase_if(unseen_, [&](const Unseen& earlier) { return earlier.edit.key == edit.key; });
  unseen_.push_back({number, std::move(edit)});
}

FormChanges ShownForm::tell(Form form, std::uint64_t seenEdits) {
  std::erase_if(unseen_, [&](const Unseen& unseen) { return unseen.number <= seenEdits; });
  told_ = std::move(form);
  return show(due());
}

FormChanges ShownForm::letGo(const std::string& key) {
  held_.erase(key);
  return show(due());
}

Form ShownForm::due() const {
  Form form = told_;
  for (const auto& unseen : unseen_) form = edited(std::move(form), unseen.edit);
  for (const auto& key : held_) {
    auto* place = controlOf(form, key);
    const auto* kept = controlOf(shown_, key);
    if (place && kept && place->content.index() == kept->content.index()) {
      place->content = kept->content;
    }
  }
  return form;
}

FormChanges ShownForm::show(Form form) {
  FormChanges changes = changesBetween(shown_, form);
  shown_ = std::move(form);
  return changes;
}

}  // namespace orvane::window
