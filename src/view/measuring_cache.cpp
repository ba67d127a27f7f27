#include "view/measuring_cache.h"

#include <functional>
#include <utility>

namespace orvane {
namespace {

template <class Value>
std::size_t mixed(std::size_t seed, const Value& value) {
  return (seed ^ std::hash<Value>{}(value)) * 0x9E3779B97F4A7C15U;
}

std::size_t mixed(std::size_t seed, const Font& font) {
  const auto traits = (static_cast<unsigned>(font.weight) << 2U) |
                      (static_cast<unsigned>(font.design) << 1U) |
                      static_cast<unsigned>(font.monospacedDigits);
  return mixed(mixed(seed, font.size), traits);
}

template <class Answers, class Key, class Ask>
typename Answers::mapped_type remembered(Answers& answers, Key key, std::size_t capacity, Ask ask) {
  if (const auto known = answers.find(key); known != answers.end()) return known->second;
  const auto answer = ask();
  if (answers.size() >= capacity) answers.clear();
  answers.emplace(std::move(key), answer);
  return answer;
}

}  // namespace

std::size_t MeasuringCache::Hash::operator()(const ExtentKey& key) const {
  const auto traits = (static_cast<unsigned>(key.style.lineLimit) << 1U) |
                      static_cast<unsigned>(key.style.uppercase);
  return mixed(mixed(mixed(std::hash<std::string>{}(key.text), key.style.font), key.width), traits);
}

std::size_t MeasuringCache::Hash::operator()(const AdvanceKey& key) const {
  return mixed(std::size_t{0}, key.font) ^ std::hash<char>{}(key.character);
}

TextExtent MeasuringCache::measure(const std::string& text, const TextStyle& style,
                                   double width) const {
  return remembered(extents_, ExtentKey{text, style, width}, capacity_,
                    [&] { return measurer_.measure(text, style, width); });
}

double MeasuringCache::digitAdvance(const Font& font) const {
  return remembered(advances_, AdvanceKey{'\0', font}, capacity_,
                    [&] { return measurer_.digitAdvance(font); });
}

double MeasuringCache::advance(char character, const Font& font) const {
  return remembered(advances_, AdvanceKey{character, font}, capacity_,
                    [&] { return measurer_.advance(character, font); });
}

}  // namespace orvane
