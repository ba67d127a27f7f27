#include "view/text_fitting.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

namespace orvane::detail {
namespace {

// Shrunken sizes are whole steps, so that a text that changes a little does not need new glyphs.
constexpr double sizeStep = 0.25;
// Widths that were added up differ from the space that was made for them by rounding errors.
constexpr double tolerance = 1e-6;

bool ticks(const TextNode& text) {
  return text.style.font.monospacedDigits && !text.content.empty() &&
         text.content.find_first_not_of("0123456789:-") == std::string::npos;
}

std::vector<double> cellsOf(const std::string& text, const Font& font,
                            const TextMeasurer& measurer) {
  const double digit = measurer.digitAdvance(font);
  std::vector<double> cells;
  cells.reserve(text.size());
  for (const char character : text) {
    const bool isDigit = character >= '0' && character <= '9';
    cells.push_back(isDigit ? digit : measurer.advance(character, font));
  }
  return cells;
}

// On one line of cells; nothing where the line is too long.
std::optional<FittedText> fitCells(const std::string& text, const TextStyle& style, double width,
                                   const TextMeasurer& measurer) {
  auto cells = cellsOf(text, style.font, measurer);
  const double length = std::accumulate(cells.begin(), cells.end(), 0.0);
  if (length > width + tolerance) return std::nullopt;
  // All these characters are of one height, so one measurement serves every text.
  TextExtent extent = measurer.measure("0", style, unlimitedWidth);
  extent.size.width = length;
  return FittedText{style, extent, std::move(cells)};
}

std::optional<FittedText> fitWhole(const TextNode& text, const TextStyle& style, double width,
                                   const TextMeasurer& measurer) {
  if (ticks(text)) return fitCells(text.content, style, width, measurer);
  TextExtent extent = measurer.measure(text.content, style, width);
  if (extent.truncated) return std::nullopt;
  return FittedText{style, extent, {}};
}

FittedText fitCut(const TextNode& text, const TextStyle& style, double width,
                  const TextMeasurer& measurer) {
  return {style, measurer.measure(text.content, style, width), {}};
}

// The largest size that may fit on one line, as its width goes with its size; a first guess.
double guessedSize(const TextNode& text, double width, const TextMeasurer& measurer) {
  const double size = text.style.font.size;
  if (text.style.lineLimit != 1) return size - sizeStep;
  const auto whole = fitWhole(text, text.style, unlimitedWidth, measurer);
  if (!whole || whole->extent.size.width <= 0) return size - sizeStep;
  const double proportional = size * width / whole->extent.size.width;
  return std::min(std::floor(proportional / sizeStep) * sizeStep, size - sizeStep);
}

FittedText fitShrunken(const TextNode& text, double width, const TextMeasurer& measurer) {
  const double smallest = text.style.font.size * text.minimumScale;
  TextStyle style = text.style;
  for (double size = guessedSize(text, width, measurer); size > smallest; size -= sizeStep) {
    style.font.size = size;
    if (auto fitted = fitWhole(text, style, width, measurer)) return *fitted;
  }
  style.font.size = smallest;
  if (auto fitted = fitWhole(text, style, width, measurer)) return *fitted;
  return fitCut(text, style, width, measurer);
}

// Offered nothing, a text takes nothing, but stays one line high.
FittedText fitNothing(const TextNode& text, const TextMeasurer& measurer) {
  TextExtent extent = measurer.measure("0", text.style, unlimitedWidth);
  extent.size.width = 0;
  extent.truncated = !text.content.empty();
  return {text.style, extent, {}};
}

}  // namespace

FittedText fitText(const TextNode& text, double width, const TextMeasurer& measurer) {
  if (!(width > 0)) return fitNothing(text, measurer);
  if (auto fitted = fitWhole(text, text.style, width, measurer)) return *fitted;
  const bool mayShrink = text.minimumScale < 1 && text.style.lineLimit > 0;
  return mayShrink ? fitShrunken(text, width, measurer) : fitCut(text, text.style, width, measurer);
}

}  // namespace orvane::detail
