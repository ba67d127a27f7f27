#pragma once

#include <functional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "foundation/subject.h"
#include "platform/form_window.h"

namespace orvane::fakes {

// A form view that a test sets, and which notes the edits that arrive.
class NotedForm final : public FormView {
 public:
  [[nodiscard]] Form form() const override { return form_; }
  void edit(const FormEdit& edit) override { edits.push_back(edit); }
  [[nodiscard]] Subscription onChange(std::function<void()> observer) override {
    return changed_.subscribe(std::move(observer));
  }

  void setForm(Form form) { form_ = std::move(form); }
  // Of the first preview that there is.
  void setPreview(View view) {
    forEachControl(form_, [&](FormControl& control) {
      if (auto* preview = std::get_if<FormPreview>(&control.content)) preview->view = view;
    });
  }
  // What a fake window is to do when it is next told the form.
  void order(std::string what) { form_.header.subtitle.text = std::move(what); }
  void announce() { changed_.send(); }
  [[nodiscard]] bool isFollowed() const { return changed_.observerCount() > 0; }

  std::vector<FormEdit> edits;

 private:
  Form form_;
  Subject<> changed_;
};

}  // namespace orvane::fakes
