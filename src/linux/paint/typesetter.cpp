#include "linux/paint/typesetter.h"

#include <algorithm>
#include <cmath>

#include "linux/paint/font_families.h"
#include "linux/paint/pango_units.h"
#include "linux/paint/plain_text.h"

namespace orvane::host {

namespace {

// A frame that was measured holds its text again though its width was rounded on the way.
int toPangoWidth(double points) {
  constexpr double widest = 1 << 20;
  if (!(points < widest)) return -1;
  return static_cast<int>(std::lround(std::max(points, 0.0) * PANGO_SCALE));
}

PangoWeight pangoWeight(FontWeight weight) {
  return static_cast<PangoWeight>(static_cast<int>(weight));
}

// Absolute sizes, since setting the map's resolution would make pango list every font there is.
void setSize(PangoFontDescription* description, const Font& font) {
  pango_font_description_set_absolute_size(description,
                                           std::clamp(font.size, 0.1, 4096.0) * PANGO_SCALE);
}

CairoFontOptionsHandle fontOptions(FontOptions::Rendering rendering) {
  CairoFontOptionsHandle options(cairo_font_options_create());
  // Coverage alone, since what lies under a translucent picture is not known here, and lengths
  // that are the same at every scale.
  cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
  cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
  cairo_font_options_set_hint_style(options.get(), rendering == FontOptions::Rendering::fixed
                                                       ? CAIRO_HINT_STYLE_NONE
                                                       : CAIRO_HINT_STYLE_SLIGHT);
  return options;
}

AttributesHandle attributes(const TextStyle& style) {
  AttributesHandle list(pango_attr_list_new());
  // A word that is too long for its line is broken anywhere, so a hyphen there would be a mistake,
  // and in an address a character that is not part of it.
  pango_attr_list_insert(list.get(), pango_attr_insert_hyphens_new(FALSE));
  if (style.font.monospacedDigits)
    pango_attr_list_insert(list.get(), pango_attr_font_features_new("tnum=1"));
  if (style.uppercase)
    pango_attr_list_insert(list.get(),
                           pango_attr_text_transform_new(PANGO_TEXT_TRANSFORM_UPPERCASE));
  return list;
}

// Without a language of the user's, texts are set as English ones: pango would take Latin letters
// for that all the same, and look up every font in both.
PangoLanguage* languageOf(const FontOptions& options) {
  if (!options.language.empty()) return pango_language_from_string(options.language.c_str());
  PangoLanguage* const users = pango_language_get_default();
  return pango_language_matches(users, "c;posix") ? pango_language_from_string("en") : users;
}

std::size_t hashOf(const Font& font) {
  std::size_t hash = hashWith(0, font.size);
  hash = hashWith(hash, static_cast<int>(font.weight));
  hash = hashWith(hash, static_cast<int>(font.design));
  return hashWith(hash, font.monospacedDigits);
}

}  // namespace

std::shared_ptr<Typesetter> makeTypesetter(const FontOptions& options) {
  return std::make_shared<Typesetter>(options);
}

std::size_t FontHash::operator()(const Font& font) const { return hashOf(font); }

std::size_t Typesetter::MeasureHash::operator()(const MeasureKey& key) const {
  std::size_t hash = hashWith(hashOf(key.style.font), key.text);
  hash = hashWith(hash, key.style.lineLimit);
  return hashWith(hash, key.width);
}

std::size_t Typesetter::AdvanceHash::operator()(const AdvanceKey& key) const {
  return hashWith(hashOf(key.font), key.character);
}

std::size_t Typesetter::FaceHash::operator()(const FaceKey& key) const {
  return hashWith(static_cast<std::size_t>(key.weight), static_cast<int>(key.design));
}

Typesetter::Typesetter(const FontOptions& options)
    : map_(pango_cairo_font_map_new_for_font_type(CAIRO_FONT_TYPE_FT)),
      standardFamily_(standardFamily(options)),
      roundedFamily_(roundedFamily(options)) {
  context_.reset(pango_font_map_create_context(map_.get()));
  pango_context_set_round_glyph_positions(context_.get(), FALSE);
  pango_cairo_context_set_font_options(context_.get(), fontOptions(options.rendering).get());
  pango_context_set_language(context_.get(), languageOf(options));
}

FontDescriptionHandle Typesetter::describe(const Font& font) {
  FontDescriptionHandle description(pango_font_description_copy(face(font)));
  setSize(description.get(), font);
  return description;
}

// What the wished families come down to, by its own name: while pango breaks lines it asks for
// metrics by that name, and it looks every name up anew for each size. With one name for both, half
// of that is saved. What the font lacks is looked for in the same generic families. Where the
// user's language has another script, Latin letters have another font than that, and the wish
// remains.
const PangoFontDescription* Typesetter::face(const Font& font) {
  const FaceKey key{font.design, font.weight};
  if (const FontDescriptionHandle* known = faces_.find(key)) return known->get();
  FontDescriptionHandle face(pango_font_description_new());
  const std::string& family = font.design == FontDesign::rounded ? roundedFamily_ : standardFamily_;
  pango_font_description_set_family(face.get(), family.c_str());
  pango_font_description_set_weight(face.get(), pangoWeight(font.weight));
  setSize(face.get(), font);
  PangoLanguage* const language = pango_context_get_language(context_.get());
  if (pango_language_includes_script(language, PANGO_SCRIPT_LATIN)) {
    const PangoFontHandle found(pango_font_map_load_font(map_.get(), context_.get(), face.get()));
    if (found) face.reset(pango_font_describe(found.get()));
  }
  return faces_.insert(key, std::move(face)).get();
}

LayoutHandle Typesetter::layout(const std::string& text, const TextStyle& style, double width) {
  const std::string plain = plainText(text);
  LayoutHandle layout(pango_layout_new(context_.get()));
  pango_layout_set_text(layout.get(), plain.data(), static_cast<int>(plain.size()));
  pango_layout_set_font_description(layout.get(), describe(style.font).get());
  pango_layout_set_attributes(layout.get(), attributes(style).get());
  pango_layout_set_wrap(layout.get(), PANGO_WRAP_WORD_CHAR);
  pango_layout_set_width(layout.get(), toPangoWidth(width));
  if (style.lineLimit > 0) {
    pango_layout_set_ellipsize(layout.get(), PANGO_ELLIPSIZE_END);
    pango_layout_set_height(layout.get(), -style.lineLimit);
  }
  return layout;
}

TextExtent Typesetter::measure(const std::string& text, const TextStyle& style, double width) {
  MeasureKey key{text, style, width};
  if (const TextExtent* known = extents_.find(key)) return *known;
  const LayoutHandle set = layout(text, style, width);
  return extents_.insert(key, extentOf(set.get(), style, width));
}

TextExtent Typesetter::extentOf(PangoLayout* layout, const TextStyle& style, double width) {
  const LineMetrics line = lineMetrics(style.font);
  const int lines = std::max(pango_layout_get_line_count(layout), 1);
  int widest = 0;
  int height = 0;
  pango_layout_get_size(layout, &widest, &height);
  TextExtent extent;
  // A single letter wider than the whole width is let through by pango.
  extent.size = {std::min(toPoints(widest), std::max(width, 0.0)), lines * line.height()};
  extent.firstBaseline = line.ascent;
  extent.lastBaseline = line.ascent + (lines - 1) * line.height();
  extent.truncated = pango_layout_is_ellipsized(layout) != FALSE;
  return extent;
}

LineMetrics Typesetter::lineMetrics(const Font& font) {
  if (const LineMetrics* known = metrics_.find(font)) return *known;
  LineMetrics metrics{font.size, font.size / 4};
  const PangoFontHandle face(
      pango_font_map_load_font(map_.get(), context_.get(), describe(font).get()));
  if (face) {
    // Every glyph's logical box is as high as the font's lines. The font's own metrics say no more
    // of that, and pango sets sample texts for them.
    PangoRectangle box;
    pango_font_get_glyph_extents(face.get(), PANGO_GLYPH_EMPTY, nullptr, &box);
    metrics = {toPoints(PANGO_ASCENT(box)), toPoints(PANGO_DESCENT(box))};
  }
  return metrics_.insert(font, metrics);
}

double Typesetter::advance(const std::string& character, const Font& font) {
  const AdvanceKey key{character, font};
  if (const double* known = advances_.find(key)) return *known;
  return advances_.insert(key, measure(character, {font}, unlimitedWidth).size.width);
}

double Typesetter::digitAdvance(const Font& font) {
  double widest = 0;
  for (char digit = '0'; digit <= '9'; ++digit)
    widest = std::max(widest, advance(std::string(1, digit), font));
  return widest;
}

}  // namespace orvane::host
