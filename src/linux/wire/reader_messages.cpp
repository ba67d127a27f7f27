#include "linux/wire/reader_messages.h"

#include <string_view>

#include "linux/wire/byte_reader.h"
#include "linux/wire/byte_writer.h"

namespace orvane::wire {

namespace {

// Read as little-endian text these are "OvQ1" and "OvA1".
constexpr std::uint32_t kRequestTag = 0x3151764f;
constexpr std::uint32_t kAnswerTag = 0x3141764f;
constexpr std::size_t kFrameHeaderSize = 8;

// The least bytes of one element of each list, see ByteReader::readList.
constexpr std::size_t kSmallestText = 4;
constexpr std::size_t kSmallestEvent = 4 + 4 + 1 + 8 + 8 + 1;
constexpr std::size_t kSmallestTask = 4 + 1 + 1 + 8;

auto textWriter(ByteWriter& out) {
  return [&out](const std::string& text) { out.writeText(text); };
}

auto textReader(ByteReader& in) {
  return [&in] { return in.readText(); };
}

void writeField(ByteWriter& out, const std::optional<int>& field) {
  out.writeOptional(field, [&out](int value) { out.write32(static_cast<std::uint32_t>(value)); });
}

std::optional<int> readField(ByteReader& in) {
  return in.readOptional([&in] { return static_cast<int>(in.read32()); });
}

void write(ByteWriter& out, const DateComponents& components) {
  out.writeOptional(components.calendar, textWriter(out));
  out.writeOptional(components.timeZone, textWriter(out));
  for (const auto* field : {&components.year, &components.month, &components.day, &components.hour,
                            &components.minute, &components.second}) {
    writeField(out, *field);
  }
}

DateComponents readComponents(ByteReader& in) {
  DateComponents components;
  components.calendar = in.readOptional(textReader(in));
  components.timeZone = in.readOptional(textReader(in));
  for (auto* field : {&components.year, &components.month, &components.day, &components.hour,
                      &components.minute, &components.second}) {
    *field = readField(in);
  }
  return components;
}

void write(ByteWriter& out, const EventOccurrence& event) {
  out.writeText(event.uid);
  out.writeText(event.recurrenceId);
  out.writeOptional(event.title, textWriter(out));
  out.writeDouble(event.start);
  out.writeDouble(event.end);
  out.writeBool(event.isAllDay);
}

EventOccurrence readEvent(ByteReader& in) {
  EventOccurrence event;
  event.uid = in.readText();
  event.recurrenceId = in.readText();
  event.title = in.readOptional(textReader(in));
  event.start = in.readFinite();
  event.end = in.readFinite();
  event.isAllDay = in.readBool();
  return event;
}

void write(ByteWriter& out, const OpenTask& task) {
  out.writeText(task.uid);
  out.writeOptional(task.title, textWriter(out));
  out.writeOptional(task.due, [&out](const DateComponents& due) { write(out, due); });
  out.write64(static_cast<std::uint64_t>(task.priority));
}

OpenTask readTask(ByteReader& in) {
  OpenTask task;
  task.uid = in.readText();
  task.title = in.readOptional(textReader(in));
  task.due = in.readOptional([&in] { return readComponents(in); });
  task.priority = static_cast<std::int64_t>(in.read64());
  return task;
}

ReadOutcome readOutcome(ByteReader& in) {
  const std::uint8_t value = in.readByte();
  if (value > static_cast<std::uint8_t>(ReadOutcome::tooLarge)) in.fail();
  return static_cast<ReadOutcome>(value);
}

std::optional<FileAnswer> decodeAnswer(std::string_view payload) {
  ByteReader in(payload);
  FileAnswer answer;
  answer.path = in.readText();
  answer.outcome = readOutcome(in);
  answer.calendarName = in.readOptional(textReader(in));
  answer.holdsEvents = in.readBool();
  answer.holdsTasks = in.readBool();
  answer.events = in.readList(kSmallestEvent, [&in] { return readEvent(in); });
  answer.tasks = in.readList(kSmallestTask, [&in] { return readTask(in); });
  answer.isForShownOnly = in.readBool();
  if (!in.isComplete()) return std::nullopt;
  return answer;
}

struct FrameHeader {
  std::uint32_t tag = 0;
  std::size_t size = 0;
};

FrameHeader readHeader(std::string_view bytes) {
  ByteReader in(bytes.substr(0, kFrameHeaderSize));
  FrameHeader header;
  header.tag = in.read32();
  header.size = in.read32();
  return header;
}

}  // namespace

std::string encode(const ReadRequest& request) {
  ByteWriter out;
  out.writeDouble(request.windowStart);
  out.writeDouble(request.windowEnd);
  out.writeDouble(request.shownStart);
  out.writeDouble(request.shownEnd);
  out.writeText(request.localTimeZone);
  out.writeList(request.paths, textWriter(out));
  return out.framed(kRequestTag);
}

std::optional<ReadRequest> decodeRequest(const std::string& bytes) {
  if (bytes.size() < kFrameHeaderSize || bytes.size() > kFrameHeaderSize + kMostMessageBytes) {
    return std::nullopt;
  }
  const FrameHeader header = readHeader(bytes);
  if (header.tag != kRequestTag || header.size != bytes.size() - kFrameHeaderSize) {
    return std::nullopt;
  }
  ByteReader in(std::string_view(bytes).substr(kFrameHeaderSize));
  ReadRequest request;
  request.windowStart = in.readFinite();
  request.windowEnd = in.readFinite();
  request.shownStart = in.readFinite();
  request.shownEnd = in.readFinite();
  request.localTimeZone = in.readText();
  request.paths = in.readList(kSmallestText, textReader(in));
  if (!in.isComplete()) return std::nullopt;
  return request;
}

std::string encode(const FileAnswer& answer) {
  ByteWriter out;
  out.writeText(answer.path);
  out.writeByte(static_cast<std::uint8_t>(answer.outcome));
  out.writeOptional(answer.calendarName, textWriter(out));
  out.writeBool(answer.holdsEvents);
  out.writeBool(answer.holdsTasks);
  out.writeList(answer.events, [&out](const EventOccurrence& event) { write(out, event); });
  out.writeList(answer.tasks, [&out](const OpenTask& task) { write(out, task); });
  out.writeBool(answer.isForShownOnly);
  return out.framed(kAnswerTag);
}

void AnswerStream::append(const char* bytes, std::size_t count) {
  if (broken_) return;
  // What was cut out is dropped once it is the larger part, so that each byte moves at most once.
  if (consumed_ > buffer_.size() / 2) {
    buffer_.erase(0, consumed_);
    consumed_ = 0;
  }
  buffer_.append(bytes, count);
}

std::optional<FileAnswer> AnswerStream::next() {
  const std::string_view rest = std::string_view(buffer_).substr(consumed_);
  if (broken_ || rest.size() < kFrameHeaderSize) return std::nullopt;
  const FrameHeader header = readHeader(rest);
  std::optional<FileAnswer> answer;
  if (header.tag == kAnswerTag && header.size <= kMostMessageBytes) {
    if (rest.size() - kFrameHeaderSize < header.size) return std::nullopt;
    answer = decodeAnswer(rest.substr(kFrameHeaderSize, header.size));
  }
  consumed_ += kFrameHeaderSize + header.size;
  if (!answer) {
    broken_ = true;
    buffer_ = {};
    consumed_ = 0;
  }
  return answer;
}

}  // namespace orvane::wire
