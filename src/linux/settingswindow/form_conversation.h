#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "linux/settingswindow/preview_picture.h"
#include "linux/settingswindow/wire/messages.h"
#include "platform/form_window.h"

namespace orvane::host {

// What is said to one program about one form, from its start to its end: what to say next, and only
// when what was said before is acknowledged. Knows nothing of sockets or time. Main thread only.
class FormConversation {
 public:
  // False: the message is over the limits and was not said.
  using Say = std::function<bool(const formwire::BoardMessage&)>;

  FormConversation(Say say, DrawPreview drawPreview)
      : say_(std::move(say)), drawPreview_(std::move(drawPreview)) {}

  // The window is to be shown, or brought to the front. The numbers and the form are filled in.
  void askToShow(formwire::Show show);
  // The form may differ from what was said of it.
  void formChanged() { isStale_ = true; }
  // What there is to say now, if anything. False: the form is over the limits.
  [[nodiscard]] bool sayNext(const FormView& view);

  // ---- What the window said. False: it makes no sense.
  [[nodiscard]] bool acknowledged(std::uint64_t sequence);
  [[nodiscard]] bool edited(std::uint64_t number);
  void previewScale(double scale);

  // Something was said and not acknowledged.
  [[nodiscard]] bool isWaiting() const { return acknowledged_ < said_; }
  // The window was asked for and has not yet acknowledged it.
  [[nodiscard]] bool isShowing() const { return show_ || acknowledged_ < shown_; }
  // It acknowledged to have shown itself at least once.
  [[nodiscard]] bool wasShown() const { return shown_ > 0 && acknowledged_ >= firstShown_; }

 private:
  struct SaidPicture {
    FormPreview preview;
    double scale = 0;
  };

  [[nodiscard]] bool sayForm(const Form& form);
  void sayPictures(const Form& form);
  void sayPicture(const std::string& key, const FormPreview& preview);

  const Say say_;
  const DrawPreview drawPreview_;
  std::optional<formwire::Show> show_;
  bool isStale_ = false;  // what was said may not be how things stand
  double previewScale_ = 0;

  std::uint64_t said_ = 0;  // sequence numbers
  std::uint64_t acknowledged_ = 0;
  std::uint64_t firstShown_ = 0;
  std::uint64_t shown_ = 0;
  std::uint64_t lastEdit_ = 0;
  std::uint64_t lastEditSaid_ = 0;
  std::optional<Form> saidForm_;
  std::map<std::string, SaidPicture> saidPictures_;
};

}  // namespace orvane::host
