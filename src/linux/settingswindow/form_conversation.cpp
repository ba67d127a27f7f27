#include "linux/settingswindow/form_conversation.h"

#include <variant>

namespace orvane::host {
namespace {

using Previews = std::map<std::string, const FormPreview*>;

Previews previewsIn(const Form& form) {
  Previews previews;
  forEachControl(form, [&](const FormControl& control) {
    if (const auto* preview = std::get_if<FormPreview>(&control.content)) {
      previews[control.key] = preview;
    }
  });
  return previews;
}

}  // namespace

void FormConversation::askToShow(formwire::Show show) { show_ = std::move(show); }

void FormConversation::previewScale(double scale) {
  previewScale_ = scale;
  isStale_ = true;
}

bool FormConversation::sayNext(const FormView& view) {
  if (isWaiting() || (!show_ && !isStale_)) return true;
  const Form form = view.form();
  if (!sayForm(form)) return false;
  sayPictures(form);
  return true;
}

bool FormConversation::sayForm(const Form& form) {
  const bool differs = isStale_ && saidForm_ != form;
  isStale_ = false;
  const std::uint64_t sequence = said_ + 1;
  if (show_) {
    show_->sequence = sequence;
    show_->lastEdit = lastEdit_;
    show_->form = form;
    if (!say_(*std::exchange(show_, std::nullopt))) return false;
    if (firstShown_ == 0) firstShown_ = sequence;
    shown_ = sequence;
  } else if (differs || lastEditSaid_ != lastEdit_) {
    const formwire::Update update{sequence, lastEdit_,
                                  differs ? std::optional<Form>(form) : std::nullopt};
    if (!say_(update)) return false;
  } else {
    return true;
  }
  said_ = sequence;
  lastEditSaid_ = lastEdit_;
  saidForm_ = form;
  return true;
}

void FormConversation::sayPictures(const Form& form) {
  if (!(previewScale_ > 0) || !drawPreview_) return;
  for (const auto& [key, preview] : previewsIn(form)) sayPicture(key, *preview);
}

void FormConversation::sayPicture(const std::string& key, const FormPreview& preview) {
  auto& said = saidPictures_[key];
  if (said.scale == previewScale_ && said.preview == preview) return;
  said = {preview, previewScale_};
  auto picture = drawPreview_(preview, previewScale_);
  const formwire::Preview message{said_ + 1,      key,           picture.width,
                                  picture.height, previewScale_, std::move(picture.pixels)};
  // One that is too large is not shown, and everything else is.
  if (say_(message)) ++said_;
}

bool FormConversation::acknowledged(std::uint64_t sequence) {
  if (sequence <= acknowledged_ || sequence > said_) return false;
  acknowledged_ = sequence;
  return true;
}

bool FormConversation::edited(std::uint64_t number) {
  if (number <= lastEdit_) return false;
  lastEdit_ = number;
  isStale_ = true;
  return true;
}

}  // namespace orvane::host
