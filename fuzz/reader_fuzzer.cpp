// Any bytes as a calendar file, and as the messages that the reader and its client exchange.
#include <cstddef>
#include <cstdint>
#include <string>

#include "linux/reader/calendar_text.h"
#include "linux/reader/system_zones.h"
#include "linux/wire/reader_messages.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orvane;
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  ical::SystemZones systemZones;
  ical::DefinedZones definedZones(systemZones, 2060);
  const ical::Zone local(3600, {{1'774'746'000, 7200}, {1'792'890'000, 3600}});
  const ical::TimeReading times(local);
  const ical::ReadingPlace place{times, {1'795'219'200, 1'795'824'000}, systemZones, definedZones};
  const wire::FileAnswer answer = ical::readCalendarText(bytes, place);
  wire::AnswerStream stream;
  const std::string encoded = wire::encode(answer);
  stream.append(encoded.data(), encoded.size());
  if (stream.next() != answer) __builtin_trap();

  wire::AnswerStream foreign;
  foreign.append(bytes.data(), bytes.size());
  while (foreign.next()) {
  }
  (void)wire::decodeRequest(bytes);
  (void)ical::decodeCompiledZone(bytes);
  return 0;
}
