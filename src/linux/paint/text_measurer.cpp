#include "linux/paint/text_measurer.h"

#include <utility>

#include "linux/paint/plain_text.h"
#include "linux/paint/typesetter.h"

namespace orvane::host {

namespace {

class PangoTextMeasurer final : public TextMeasurer {
 public:
  explicit PangoTextMeasurer(std::shared_ptr<Typesetter> typesetter)
      : typesetter_(std::move(typesetter)) {}

  TextExtent measure(const std::string& text, const TextStyle& style, double width) const override {
    return typesetter_->measure(text, style, width);
  }
  double digitAdvance(const Font& font) const override { return typesetter_->digitAdvance(font); }
  double advance(char character, const Font& font) const override {
    return typesetter_->advance(plainText({&character, 1}), font);
  }

 private:
  std::shared_ptr<Typesetter> typesetter_;
};

}  // namespace

std::unique_ptr<TextMeasurer> makeTextMeasurer(std::shared_ptr<Typesetter> typesetter) {
  return std::make_unique<PangoTextMeasurer>(std::move(typesetter));
}

}  // namespace orvane::host
