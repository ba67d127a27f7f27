#include "linux/settingswindow/wire/messages.h"

#include <algorithm>
#include <utility>

#include "linux/settingswindow/wire/form_json.h"
#include "linux/settingswindow/wire/json_fields.h"
#include "linux/wire/byte_reader.h"
#include "linux/wire/byte_writer.h"

namespace orvane::formwire {
namespace {

using nlohmann::json;

// The byte that tells a frame's kind.
constexpr char kJson = 'J';
constexpr char kPicture = 'P';

// A form is six deep in a message of two, and values go one or two further.
constexpr int kDeepest = 24;

std::optional<std::string> framed(char kind, const std::string& content, std::size_t mostBytes) {
  if (content.size() + 1 > mostBytes) return std::nullopt;
  wire::ByteWriter frame;
  frame.write32(static_cast<std::uint32_t>(content.size() + 1));
  return frame.bytes() + kind + content;
}

std::optional<std::string> framed(const json& message, std::size_t mostBytes) {
  return framed(kJson, message.dump(-1, ' ', false, json::error_handler_t::replace), mostBytes);
}

// Asked before the text is parsed, since the parser would go on to the text's end.
bool isNestedTooDeep(std::string_view text) {
  int depth = 0;
  bool isInString = false;
  for (std::size_t index = 0; index < text.size() && depth <= kDeepest; ++index) {
    const char byte = text[index];
    if (byte == '"') isInString = !isInString;
    if (isInString) {
      if (byte == '\\') ++index;
    } else if (byte == '[' || byte == '{') {
      ++depth;
    } else if (byte == ']' || byte == '}') {
      --depth;
    }
  }
  return depth > kDeepest;
}

// Nothing for what is no JSON, or nested deeper than any message.
std::optional<json> parsed(std::string_view text) {
  if (isNestedTooDeep(text)) return std::nullopt;
  auto found = json::parse(text, nullptr, /*allow_exceptions=*/false);
  if (found.is_discarded()) return std::nullopt;
  return found;
}

// ---- Parts of messages

constexpr double kFarthest = 1e6;

json jsonOf(const WindowState& state) {
  json offsets = json::object();
  for (const auto& [name, offset] : state.scrollOffsets) offsets[name] = offset;
  return {{"position", state.position ? json{state.position->x, state.position->y} : json()},
          {"scrollOffsets", std::move(offsets)}};
}

double readOffset(const JsonReader& in) { return in.numberIn(0, 100 * kFarthest); }

Point readPoint(const JsonReader& in) {
  const auto parts =
      in.list(2, [](const JsonReader& part) { return part.numberIn(-kFarthest, kFarthest); });
  if (parts.size() == 2) return {parts[0], parts[1]};
  in.fail();
  return {};
}

WindowState readState(const JsonReader& in) {
  WindowState state;
  state.position = in.at("position").optional(readPoint);
  state.scrollOffsets = in.at("scrollOffsets").members(kMostOffsets, readOffset);
  return state;
}

json jsonOf(const WindowStyle& style) {
  return {{"titled", style.isTitled},
          {"closable", style.isClosable},
          {"miniaturizable", style.isMiniaturizable},
          {"transparentTitlebar", style.titlebarAppearsTransparent}};
}

WindowStyle readStyle(const JsonReader& in) {
  return {in.at("titled").flag(), in.at("closable").flag(), in.at("miniaturizable").flag(),
          in.at("transparentTitlebar").flag()};
}

// ---- Messages

json jsonOf(const Show& show) {
  return {{"is", "show"},
          {"sequence", show.sequence},
          {"lastEdit", show.lastEdit},
          {"title", show.title},
          {"style", jsonOf(show.style)},
          {"state", jsonOf(show.state)},
          {"activationToken", show.activationToken},
          {"form", formwire::jsonOf(show.form)},
          {"centered", show.isCentered}};
}

Show readShow(const JsonReader& in) {
  return {in.at("sequence").count(), in.at("lastEdit").count(), in.at("title").text(),
          readStyle(in.at("style")), readState(in.at("state")), in.at("activationToken").text(),
          readForm(in.at("form")),   in.at("centered").flag()};
}

json jsonOf(const Update& update) {
  return {{"is", "update"},
          {"sequence", update.sequence},
          {"lastEdit", update.lastEdit},
          {"form", update.form ? formwire::jsonOf(*update.form) : json()}};
}

Update readUpdate(const JsonReader& in) {
  return {in.at("sequence").count(), in.at("lastEdit").count(), in.at("form").optional(readForm)};
}

std::size_t pixelBytes(const Preview& preview) {
  return std::size_t{preview.width} * preview.height * 4;
}

bool isWellFormed(const Preview& preview) {
  return preview.width > 0 && preview.height > 0 && preview.scale > 0 &&
         preview.scale <= kLargestScale && pixelBytes(preview) == preview.pixels.size();
}

std::string bytesOf(const Preview& preview) {
  wire::ByteWriter out;
  out.write64(preview.sequence);
  out.writeText(preview.key);
  out.write32(preview.width);
  out.write32(preview.height);
  out.writeDouble(preview.scale);
  out.writeText(preview.pixels);
  return out.bytes();
}

std::optional<BoardMessage> readPreview(std::string_view content) {
  wire::ByteReader in(content);
  Preview preview;
  preview.sequence = in.read64();
  preview.key = in.readText();
  preview.width = in.read32();
  preview.height = in.read32();
  preview.scale = in.readFinite();
  preview.pixels = in.readText();
  if (!in.isComplete() || !isWellFormed(preview)) return std::nullopt;
  return preview;
}

struct FrameOfBoard {
  std::optional<std::string> operator()(const Preview& preview) const {
    if (!isWellFormed(preview)) return std::nullopt;
    return framed(kPicture, bytesOf(preview), kMostBoardBytes);
  }
  std::optional<std::string> operator()(const Show& show) const {
    if (!isWithinLimits(show.form) || show.state.scrollOffsets.size() > kMostOffsets) {
      return std::nullopt;
    }
    return framed(jsonOf(show), kMostBoardBytes);
  }
  std::optional<std::string> operator()(const Update& update) const {
    if (update.form && !isWithinLimits(*update.form)) return std::nullopt;
    return framed(jsonOf(update), kMostBoardBytes);
  }
};

struct JsonOfWindow {
  json operator()(const Edited& edited) const {
    return {{"is", "edited"}, {"number", edited.number}, {"edit", formwire::jsonOf(edited.edit)}};
  }
  json operator()(const Closed&) const { return {{"is", "closed"}}; }
  json operator()(const State& state) const {
    return {{"is", "state"}, {"state", jsonOf(state.state)}};
  }
  json operator()(const PreviewScale& scale) const {
    return {{"is", "previewScale"}, {"scale", scale.scale}};
  }
  json operator()(const Ack& ack) const { return {{"is", "ack"}, {"sequence", ack.sequence}}; }
};

std::optional<BoardMessage> readBoardMessage(const std::string& is, const JsonReader& in) {
  if (is == "show") return readShow(in);
  if (is == "update") return readUpdate(in);
  return std::nullopt;
}

std::optional<WindowMessage> readWindowMessage(const std::string& is, const JsonReader& in) {
  if (is == "edited") return Edited{in.at("number").count(), readEdit(in.at("edit"))};
  if (is == "closed") return Closed{};
  if (is == "state") return State{readState(in.at("state"))};
  if (is == "previewScale") return PreviewScale{in.at("scale").numberIn(0, kLargestScale)};
  if (is == "ack") return Ack{in.at("sequence").count()};
  return std::nullopt;
}

template <class Message>
std::optional<Message> readJson(std::string_view text,
                                std::optional<Message> (*read)(const std::string&,
                                                               const JsonReader&)) {
  const auto document = parsed(text);
  if (!document) return std::nullopt;
  bool failed = false;
  const JsonReader in(*document, failed);
  auto message = read(in.at("is").text(), in);
  return failed ? std::nullopt : std::move(message);
}

}  // namespace

std::optional<std::string> encode(const BoardMessage& message) {
  return std::visit(FrameOfBoard{}, message);
}

std::optional<std::string> encode(const WindowMessage& message) {
  const auto* state = std::get_if<State>(&message);
  if (state && state->state.scrollOffsets.size() > kMostOffsets) return std::nullopt;
  return framed(std::visit(JsonOfWindow{}, message), kMostWindowBytes);
}

std::optional<BoardMessage> decodeBoardMessage(std::string_view content) {
  if (content.empty() || content.size() > kMostBoardBytes) return std::nullopt;
  if (content.front() == kPicture) return readPreview(content.substr(1));
  if (content.front() != kJson) return std::nullopt;
  return readJson<BoardMessage>(content.substr(1), readBoardMessage);
}

std::optional<WindowMessage> decodeWindowMessage(std::string_view content) {
  if (content.empty() || content.size() > kMostWindowBytes || content.front() != kJson) {
    return std::nullopt;
  }
  return readJson<WindowMessage>(content.substr(1), readWindowMessage);
}

}  // namespace orvane::formwire
