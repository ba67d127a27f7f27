#include "linux/settingswindow/wire/form_json.h"

#include <algorithm>
#include <array>
#include <type_traits>
#include <utility>
#include <variant>

namespace orvane::formwire {
namespace {

using nlohmann::json;

constexpr std::size_t kMostTabs = 32;
constexpr std::size_t kMostSections = 64;
constexpr std::size_t kMostControls = 256;
constexpr std::size_t kMostChoices = 1000;
constexpr std::size_t kMostRows = 50'000;

// What a control is, in the order of FormControl::content.
constexpr std::array<const char*, 8> kKinds{"picker",       "toggle",      "text field", "slider",
                                            "color picker", "source list", "preview",    "caption"};
static_assert(kKinds.size() == std::variant_size_v<decltype(FormControl::content)>);

double readLength(const JsonReader& in) { return in.numberIn(0, kLongestLength); }

template <class T, class JsonOfOne>
json listOf(const std::vector<T>& values, JsonOfOne jsonOfOne) {
  json list = json::array();
  for (const T& value : values) list.push_back(jsonOfOne(value));
  return list;
}

json jsonOf(const Color& color) {
  const SRGB srgb = color.resolved();
  return {srgb.red, srgb.green, srgb.blue, srgb.opacity};
}

Color readColor(const JsonReader& in) {
  const auto parts = in.list(4, [](const JsonReader& part) { return part.numberIn(0, 1); });
  if (parts.size() == 4) return Color::srgb(parts[0], parts[1], parts[2], parts[3]);
  in.fail();
  return {};
}

json jsonOf(const FormText& text) {
  return {{"text", text.text},
          {"style", static_cast<unsigned>(text.style)},
          {"semibold", text.isSemibold},
          {"secondary", text.isSecondary}};
}

FormText readText(const JsonReader& in) {
  const auto style = in.at("style").count();
  if (style > static_cast<unsigned>(FormTextStyle::caption)) in.fail();
  return {in.at("text").text(),
          in.hasFailed() ? FormTextStyle{} : static_cast<FormTextStyle>(style),
          in.at("semibold").flag(), in.at("secondary").flag()};
}

json jsonOf(const FormButton& button) {
  return {{"key", button.key},
          {"label", button.label},
          {"enabled", button.isEnabled},
          {"default", button.isDefaultAction},
          {"closes", button.closesWindow}};
}

FormButton readButton(const JsonReader& in) {
  return {in.at("key").text(), in.at("label").text(), in.at("enabled").flag(),
          in.at("default").flag(), in.at("closes").flag()};
}

// ---- Controls

json jsonOf(const FormPicker& picker) {
  return {{"value", picker.value}, {"choices", listOf(picker.choices, [](const auto& choice) {
                                      return json{{"id", choice.id}, {"title", choice.title}};
                                    })}};
}

FormPicker readPicker(const JsonReader& in) {
  return {in.at("value").text(), in.at("choices").list(kMostChoices, [](const JsonReader& choice) {
            return FormChoice{choice.at("id").text(), choice.at("title").text()};
          })};
}

json jsonOf(const FormToggle& toggle) { return {{"on", toggle.isOn}}; }

json jsonOf(const FormTextField& field) {
  return {{"text", field.text}, {"placeholder", field.placeholder}, {"longest", field.longest}};
}

FormTextField readTextField(const JsonReader& in) {
  return {in.at("text").text(), in.at("placeholder").text(),
          static_cast<std::size_t>(in.at("longest").count())};
}

json jsonOf(const FormSlider& slider) {
  return {{"value", slider.value}, {"lowest", slider.lowest}, {"highest", slider.highest}};
}

FormSlider readSlider(const JsonReader& in) {
  const FormSlider slider{in.at("value").number(), in.at("lowest").number(),
                          in.at("highest").number()};
  if (slider.value < slider.lowest || slider.value > slider.highest) in.fail();
  return slider;
}

json jsonOf(const FormColorPicker& picker) { return {{"color", jsonOf(picker.color)}}; }

json jsonOf(const FormSourceList& list) {
  json rows = listOf(list.rows, [](const FormRow& row) {
    return json{{"key", row.key}, {"label", row.label}, {"on", row.isOn}};
  });
  json empty;
  if (list.emptyState) {
    empty = {{"symbol", list.emptyState->symbol}, {"text", list.emptyState->text}};
  }
  return {{"all", jsonOf(list.all)},        {"rows", std::move(rows)},
          {"emptyState", std::move(empty)}, {"height", list.height},
          {"minHeight", list.minHeight},    {"rowSpacing", list.rowSpacing},
          {"padding", list.padding}};
}

FormSourceList readSourceList(const JsonReader& in) {
  FormSourceList list;
  list.all = readButton(in.at("all"));
  list.rows = in.at("rows").list(kMostRows, [](const JsonReader& row) {
    return FormRow{row.at("key").text(), row.at("label").text(), row.at("on").flag()};
  });
  list.emptyState = in.at("emptyState").optional([](const JsonReader& empty) {
    return FormEmptyState{empty.at("symbol").text(), empty.at("text").text()};
  });
  list.height = readLength(in.at("height"));
  list.minHeight = readLength(in.at("minHeight"));
  list.rowSpacing = readLength(in.at("rowSpacing"));
  list.padding = readLength(in.at("padding"));
  return list;
}

json jsonOf(const FormPreview& preview) { return {{"size", formwire::jsonOf(preview.size)}}; }

json jsonOf(const FormCaption&) { return json::object(); }

using Content = decltype(FormControl::content);

Content readContent(const std::string& kind, const JsonReader& in) {
  if (kind == kKinds[0]) return readPicker(in);
  if (kind == kKinds[1]) return FormToggle{in.at("on").flag()};
  if (kind == kKinds[2]) return readTextField(in);
  if (kind == kKinds[3]) return readSlider(in);
  if (kind == kKinds[4]) return FormColorPicker{readColor(in.at("color"))};
  if (kind == kKinds[5]) return readSourceList(in);
  if (kind == kKinds[6]) return FormPreview{{}, readSize(in.at("size"))};
  if (kind != kKinds[7]) in.fail();
  return FormCaption{};
}

json jsonOf(const FormControl& control) {
  return {{"key", control.key},
          {"label", control.label},
          {"enabled", control.isEnabled},
          {"kind", kKinds.at(control.content.index())},
          {"content",
           std::visit([](const auto& content) { return jsonOf(content); }, control.content)}};
}

FormControl readControl(const JsonReader& in) {
  return {in.at("key").text(), in.at("label").text(), in.at("enabled").flag(),
          readContent(in.at("kind").text(), in.at("content"))};
}

// ---- What holds controls

json jsonOf(const FormSection& section) {
  return {{"title", section.title},
          {"controls",
           listOf(section.controls, [](const FormControl& control) { return jsonOf(control); })}};
}

FormSection readSection(const JsonReader& in) {
  return {in.at("title").text(), in.at("controls").list(kMostControls, readControl)};
}

json jsonOf(const FormTab& tab) {
  return {{"label", tab.label},
          {"symbol", tab.symbol},
          {"tag", tab.tag},
          {"sections",
           listOf(tab.sections, [](const FormSection& section) { return jsonOf(section); })},
          {"sideBySide", tab.isSideBySide}};
}

FormTab readTab(const JsonReader& in) {
  return {in.at("label").text(), in.at("symbol").text(), in.at("tag").text(),
          in.at("sections").list(kMostSections, readSection), in.at("sideBySide").flag()};
}

json jsonOf(const FormHeader& header) {
  return {{"symbol", header.symbol},
          {"title", jsonOf(header.title)},
          {"subtitle", jsonOf(header.subtitle)}};
}

FormHeader readHeader(const JsonReader& in) {
  return {in.at("symbol").text(), readText(in.at("title")), readText(in.at("subtitle"))};
}

bool isWithinLimits(const FormControl& control) {
  if (const auto* picker = std::get_if<FormPicker>(&control.content)) {
    return picker->choices.size() <= kMostChoices;
  }
  const auto* list = std::get_if<FormSourceList>(&control.content);
  return !list || list->rows.size() <= kMostRows;
}

bool isWithinLimits(const FormSection& section) {
  return section.controls.size() <= kMostControls &&
         std::ranges::all_of(section.controls, [](const auto& one) { return isWithinLimits(one); });
}

bool isWithinLimits(const FormTab& tab) {
  return tab.sections.size() <= kMostSections &&
         std::ranges::all_of(tab.sections, [](const auto& one) { return isWithinLimits(one); });
}

// ---- Edits

struct JsonOfValue {
  json operator()(std::monostate) const { return nullptr; }
  json operator()(bool value) const { return value; }
  json operator()(double value) const { return value; }
  json operator()(const std::string& value) const { return value; }
  json operator()(const Color& value) const { return jsonOf(value); }
};

FormValue readValue(const JsonReader& in) {
  if (in.value().is_null()) return std::monostate{};
  if (in.value().is_boolean()) return in.flag();
  if (in.value().is_number()) return in.number();
  if (in.value().is_string()) return in.text();
  return readColor(in);
}

}  // namespace

bool isWithinLimits(const Form& form) {
  return form.tabs.size() <= kMostTabs &&
         std::ranges::all_of(form.tabs, [](const auto& tab) { return isWithinLimits(tab); });
}

json jsonOf(const Size& size) { return {size.width, size.height}; }

Size readSize(const JsonReader& in) {
  const auto lengths = in.list(2, readLength);
  if (lengths.size() == 2) return {lengths[0], lengths[1]};
  in.fail();
  return {};
}

json jsonOf(const Form& form) {
  return {{"size", jsonOf(form.size)},
          {"padding", form.padding},
          {"spacing", form.spacing},
          {"controlSpacing", form.controlSpacing},
          {"tabPadding", form.tabPadding},
          {"header", jsonOf(form.header)},
          {"selectedTab", form.selectedTab},
          {"tabs", listOf(form.tabs, [](const FormTab& tab) { return jsonOf(tab); })},
          {"note", jsonOf(form.footer.note)},
          {"done", jsonOf(form.footer.done)}};
}

Form readForm(const JsonReader& in) {
  Form form;
  form.size = readSize(in.at("size"));
  form.padding = readLength(in.at("padding"));
  form.spacing = readLength(in.at("spacing"));
  form.controlSpacing = readLength(in.at("controlSpacing"));
  form.tabPadding = readLength(in.at("tabPadding"));
  form.header = readHeader(in.at("header"));
  form.selectedTab = in.at("selectedTab").text();
  form.tabs = in.at("tabs").list(kMostTabs, readTab);
  form.footer = {readText(in.at("note")), readButton(in.at("done"))};
  return form;
}

json jsonOf(const FormEdit& edit) {
  return {{"key", edit.key}, {"value", std::visit(JsonOfValue{}, edit.value)}};
}

FormEdit readEdit(const JsonReader& in) { return {in.at("key").text(), readValue(in.at("value"))}; }

}  // namespace orvane::formwire
